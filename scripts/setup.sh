# Sourced by ./demo, ./test, scripts/long, scripts/fuzz, scripts/everywhere and scripts/packages.

# present <package>: true when what the package brings is on this machine, wherever it came from.
present() {
    case $1 in
        clang) command -v clang++ ;;
        ninja-build) command -v ninja ;;
        libclang-rt-14-dev) ls /usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-*.a ;;
        libgtest-dev) ls /usr/include/gtest/gtest.h ;;
        libbenchmark-dev) ls /usr/include/benchmark/benchmark.h ;;
        calculix-ccx) command -v ccx ;;
        libcli11-dev) ls /usr/include/CLI/CLI.hpp ;;
        libfmt-dev) ls /usr/include/fmt/core.h ;;
        nlohmann-json3-dev) ls /usr/include/nlohmann/json.hpp ;;
        libpugixml-dev) ls /usr/include/pugixml.hpp ;;
        zlib1g-dev) ls /usr/include/zlib.h ;;
        libcairo2-dev) ls /usr/include/cairo/cairo.h ;;
        libcpp-httplib-dev) ls /usr/include/httplib.h ;;
        libjs-codemirror) ls /usr/share/javascript/codemirror/lib/codemirror.js ;;
        chromium-driver) command -v chromedriver ;;
        libtoml11-dev) ls /usr/include/toml.hpp ;;
        libsqlite3-dev) ls /usr/include/sqlite3.h ;;
        slurmctld | slurmd) ls /usr/sbin/"$1" ;;
        munge) ls /usr/sbin/munged ;;
        slurm-client) command -v sbatch ;;
        g++-aarch64-linux-gnu) command -v aarch64-linux-gnu-g++ ;;
        g++-mingw-w64-x86-64-posix) command -v x86_64-w64-mingw32-g++-posix ;;
        qemu-user) command -v qemu-aarch64 ;;
        dpkg-dev) command -v dpkg-shlibdeps ;;
        man-db) command -v man ;;
        python3-meshio | python3-numpy | python3-pytest | python3-matplotlib | python3-setuptools | python3-wheel | \
            python3-getfem | python3-selenium)
            /usr/bin/python3 -c "import ${1#python3-}" ;;
        python3-pip) /usr/bin/python3 -m pip --version ;;
        python3-venv) /usr/bin/python3 -c "import ensurepip" ;;
        python3-dev) ls /usr/include/python3*/Python.h ;;
        pybind11-dev) ls /usr/include/pybind11/pybind11.h ;;
        poppler-utils) command -v pdftotext ;;
        *) command -v "$1" ;;
    esac > /dev/null 2>&1
}

# install_missing <package>...: asks apt-get for those that are not present; as root, or through sudo.
install_missing() {
    local package missing=() as_root=()
    for package in "$@"; do
        present "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo > /dev/null; then
            echo "$0: not installed: ${missing[*]}; install them as root" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "installing ${missing[*]}"
    "${as_root[@]}" apt-get -qq update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq -y --no-install-recommends install "${missing[@]}" > /dev/null
}

# arm64_libraries: what the command brelan is made with, of Debian's arm64, in build/arm64-libraries. Nothing is installed, and
# no right of root's needed: packages are fetched by an apt-get with a state of its own, and unpacked. False where they cannot
# be had.
arm64_libraries() {
    local place=$PWD/build/arm64-libraries fetched=$PWD/build/arm64-packages package link
    [ ! -d "$place" ] || return 0
    command -v apt-get dpkg-deb > /dev/null || return 1
    rm -rf "$fetched"
    mkdir -p "$fetched/lists/partial" "$fetched/archives/partial" "$fetched/root"
    : > "$fetched/status"
    local apt=(apt-get -qq -o Dir::State="$fetched" -o Dir::State::status="$fetched/status" -o Dir::Cache="$fetched"
        -o APT::Architecture=arm64 -o APT::Architectures::=arm64 -o APT::Sandbox::User="$(id -un)")
    echo "fetching libraries of arm64"
    {
        "${apt[@]}" update
        "${apt[@]}" -y --download-only --no-install-recommends install libcairo2-dev libfmt-dev libpugixml-dev zlib1g-dev \
            libcli11-dev nlohmann-json3-dev libcpp-httplib-dev libtoml11-dev libsqlite3-dev
    } > "$fetched/log" 2>&1 || return 1
    for package in "$fetched"/archives/*.deb; do
        dpkg-deb --extract "$package" "$fetched/root" || return 1
    done
    # Links to whole paths would lead out of it.
    find "$fetched/root" -type l -lname '/*' | while read -r link; do
        ln -sfn "$place$(readlink "$link")" "$link"
    done
    mv "$fetched/root" "$place"
    rm -r "$fetched"
}

# quietly <command>...: shows what a command says only when it fails.
quietly() {
    local said
    said=$("$@" 2>&1) || {
        printf '%s\n' "$said" >&2
        return 1
    }
}

# configure <preset>: that for 64-bit ARM with the command brelan where its libraries can be had.
configure() {
    local tools=()
    if [ "$1" = aarch64 ]; then
        tools=(-D BRELAN_TOOLS=OFF)
        if arm64_libraries; then
            tools=(-D BRELAN_TOOLS=ON)
        else
            echo "without the command brelan for 64-bit ARM: its libraries cannot be had here"
        fi
    fi
    quietly cmake --preset "$1" "${tools[@]}"
}

# in_memory: temporary files in memory where there is room, as the tests make and delete thousands of small projects.
in_memory() {
    local free
    free=$(df --output=avail -k /dev/shm 2> /dev/null | tail -n 1)
    [ "${free:-0}" -gt 2000000 ] || return 0
    TMPDIR=$(mktemp -d -p /dev/shm brelan-test-XXXXXX)
    chmod 755 "$TMPDIR"  # a test runs the program as a user without rights
    export TMPDIR
    trap 'rm -rf "$TMPDIR"' EXIT
}
