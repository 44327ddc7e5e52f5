#!/bin/sh
# Makes field_text.txt and free_field.txt anew from make_tables.f90.
#
# The tables in this directory were made by this script with Debian's gfortran 12 and are kept as
# data: the tests read them and need no Fortran. Run it only after a change of make_tables.f90, and
# look at the difference before keeping it; another version of the compiler may read some lines in
# another way.
#
#   apt-get install gfortran
#   tests/data/make_tables.sh
set -eu
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
gfortran -O1 -Wall -Wextra -o make_tables "$here/make_tables.f90"
./make_tables
mv field_text.txt free_field.txt "$here/"
wc -l "$here/field_text.txt" "$here/free_field.txt"
