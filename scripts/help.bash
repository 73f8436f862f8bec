# Sourced by the scripts beside it: with -h or --help as its first word, a script prints the comment at its
# top and does nothing else.
# shellcheck shell=bash
case ${1:-} in
-h | --help)
    sed -n '2,${ /^#/!q; /^# shellcheck/d; s/^# \{0,1\}//p; }' "$0"
    exit 0
    ;;
esac
