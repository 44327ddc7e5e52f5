# Completion of brelan for bash.

_brelan_files() {
    # Directories, and files with one of the endings.
    local endings=$1 name
    local IFS=$'\n'
    compopt -o filenames 2> /dev/null
    for name in $(compgen -f -- "$cur"); do
        if [[ -d $name ]]; then
            COMPREPLY+=("$name")
        elif [[ ${name,,} =~ \.($endings)$ ]]; then
            COMPREPLY+=("$name")
        fi
    done
}

_brelan() {
    local cur=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command="" word i
    local commands="run edit watch new check info plot convert diff study help"
    local meshes='mes|meg|dat|vtu|msh' decks='dat|deck|txt|inp'
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ $word != -* ]]; then
            command=$word
            break
        fi
    done

    case $previous in
        --kind)
            COMPREPLY=($(compgen -W "coupled temperature head displacement" -- "$cur"))
            return ;;
        --cut)
            COMPREPLY=($(compgen -W "rules sound auto" -- "$cur"))
            return ;;
        --edition)
            COMPREPLY=($(compgen -W "1 2 3 4 5 6 7 8 9 10 11 12" -- "$cur"))
            return ;;
        --engine)
            COMPREPLY=($(compgen -W "local slurm" -- "$cur"))
            return ;;
        -j | --jobs | --chunk | --partition | --account | --sbatch)
            return ;;
        --numbers)
            COMPREPLY=($(compgen -W "nodes elements both" -- "$cur"))
            return ;;
        --to)
            local formats="mes vtu msh2 msh4 mdpa inp csv"
            [[ $command == plot ]] && formats="svg png pdf html"
            COMPREPLY=($(compgen -W "$formats" -- "$cur"))
            return ;;
        --deck)
            _brelan_files "$decks"
            return ;;
        --joints)
            COMPREPLY=($(compgen -W "tie spring:" -- "$cur"))
            return ;;
        --materials)
            _brelan_files "csv"
            return ;;
        --project | --data | --work | --apart)
            compopt -o filenames 2> /dev/null
            COMPREPLY=($(compgen -d -- "$cur"))
            return ;;
        --program)
            compopt -o filenames 2> /dev/null
            COMPREPLY=($(compgen -f -- "$cur"))
            return ;;
        -o | --output)
            if [[ $command == new ]]; then
                compopt -o filenames 2> /dev/null
                COMPREPLY=($(compgen -d -- "$cur"))
            else
                _brelan_files "$([[ $command == study ]] && echo csv || echo 'svg|png|pdf|html')"
            fi
            return ;;
        --list)
            [[ $command != new ]] && return ;;
        --tolerance | --title | --width | --scale | --window | --name | --nodes-on | --nodes-in | --elements-of | --on | --code | --port)
            return ;;
        --cable | --gravity | --step)
            return ;;
    esac

    if [[ -z $command ]]; then
        COMPREPLY=($(compgen -W "$commands --help --version --quiet" -- "$cur"))
        return
    fi
    if [[ $cur == -* ]]; then
        local options="--help --quiet"
        case $command in
            run) options+=" --edition --kind --project --cut --apart --json --data --work --keep --program" ;;
            edit) options+=" --edition --kind --project --cut --port --no-browser --watch" ;;
            watch) options+=" --edition --kind --project --cut" ;;
            new) options+=" --list --kind --output --name --force" ;;
            check) options+=" --edition --kind --project --work --cut --dry-run --json --strict" ;;
            info)
                options+=" --json --list --tolerance --kind --nodes-on --nodes-in --elements-of --border --pairs --on"
                options+=" --card --deck" ;;
            plot)
                options+=" --output --to --deck --step --numbers --window --title --width --scale --faults --no-codes"
                options+=" --no-lines --no-legend --no-axes --kind" ;;
            convert)
                options+=" --to --bare --code --deck --stages --cable --joints --materials --gravity --axisymmetric --kind" ;;
            study)
                options+=" --jobs --again --output --no-pictures --force --engine --chunk --partition --account --sbatch" ;;
            diff) options+=" --by-place --tolerance --list --json --kind" ;;
        esac
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
        return
    fi
    case $command in
        run | edit | watch | check) _brelan_files "$decks" ;;
        new)
            COMPREPLY=($(compgen -W "base-mesh edit-0 edit-1 edit-2 edit-3 edit-4 edit-5 edit-6 groups combination dam" \
                -- "$cur")) ;;
        study)
            _brelan_files "toml"
            COMPREPLY+=($(compgen -W "new report csv status" -- "$cur")) ;;
        help) COMPREPLY=($(compgen -W "$commands" -- "$cur")) ;;
        info | plot | convert | diff) _brelan_files "$meshes" ;;
    esac
}

complete -F _brelan brelan
