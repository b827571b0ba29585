# Completion of quillon for bash; the tool itself knows the words.

_quillon() {
    # The line is taken apart at blanks: bash would also part NAME=VALUE at the equals sign.
    local line=${COMP_LINE:0:COMP_POINT} words current reply
    read -ra words <<<"$line"
    [[ $line == *[[:space:]] ]] && words+=("")
    current=${words[-1]}
    COMPREPLY=()
    while IFS= read -r reply; do
        # Bash replaces only what stands behind the equals sign.
        [[ $current == *=* && $COMP_WORDBREAKS == *=* ]] && reply=${reply#"${current%%=*}="}
        COMPREPLY+=("$reply")
    done < <("${words[0]/#\~/$HOME}" __complete "${words[@]:1}" 2>/dev/null)
    [[ ${#COMPREPLY[@]} -ne 1 || ${COMPREPLY[0]} != *= ]] || compopt -o nospace 2>/dev/null
}

complete -o default -F _quillon quillon
