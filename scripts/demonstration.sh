# shellcheck shell=bash
# What the demonstrations share. They source this file.

heading() {
    printf '\n== %s\n' "$1"
}

microseconds() {
    echo "${EPOCHREALTIME/[.,]/}"
}
