# Completion of quillon for fish; the tool itself knows the words.

function __quillon_complete
    set -l words (commandline -opc) (commandline -ct)
    set -l replies ($words[1] __complete $words[2..-1] 2>/dev/null)
    if test (count $replies) -gt 0
        printf '%s\n' $replies
    else
        __fish_complete_path (commandline -ct)
    end
end

complete -c quillon -f -a '(__quillon_complete)'
