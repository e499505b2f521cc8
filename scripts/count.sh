# shellcheck shell=bash
# Counts checks. A script sources this file, reports each check with `passed` or `failed`, and ends with `finish`.
PASSED=0
FAILED=0

# passed [NUMBER]
passed() {
    PASSED=$((PASSED + ${1:-1}))
}

# failed [NUMBER]
failed() {
    FAILED=$((FAILED + ${1:-1}))
}

# Prints the closing line and exits: with 0 if checks passed and none failed.
finish() {
    echo "$PASSED passed, $FAILED failed"
    [ "$PASSED" -gt 0 ] && [ "$FAILED" -eq 0 ]
    exit
}

# count_of COMMAND [ARGUMENT...]: runs a command that ends with `finish` and adds its numbers. A command that dies, or
# whose exit code contradicts its closing line, is one failure.
count_of() {
    local printed status=0
    printed=$(mktemp)
    "$@" | tee "$printed" || status=$?
    if [[ $(tail -n 1 "$printed") =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed$ ]] &&
       [ $((status == 0)) -eq $((BASH_REMATCH[1] > 0 && BASH_REMATCH[2] == 0)) ]; then
        passed "${BASH_REMATCH[1]}"
        failed "${BASH_REMATCH[2]}"
        [ "$status" -eq 0 ] || [ "${BASH_REMATCH[2]}" -gt 0 ] || failed
    else
        echo "$*: did not finish"
        failed
    fi
    rm -f "$printed"
}
