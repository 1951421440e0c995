#include <tavo/cli/completion_scripts.h>

#include <stdexcept>

namespace TAVO::cli {

namespace {

// The tool is asked with the words behind its name, up to the cursor. Its answer is a line "files" or "none",
// which tells whether the name of a file may stand there, and then a word in each line.

/// bash splits words at = and : too, leaves quotes as they are, and inserts what it is given unquoted.
constexpr std::string_view bashScript = R"script(# Completes the lines of tavo in bash.

_tavo() {
    local rest=$COMP_LINE gap word i
    local -a words=()
    for ((i = 0; i <= COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        gap=${rest%%[![:space:]]*}
        rest=${rest#"$gap"}
        rest=${rest#"$word"}
        if [[ -n $gap || -z $word || i -eq 0 ]]; then
            words+=("$word")
        else
            words[${#words[@]} - 1]+=$word
        fi
    done
    local typed=${words[${#words[@]} - 1]}
    # What stands behind the cursor.
    local behind=$((${#COMP_LINE} - ${#rest} - COMP_POINT))
    ((behind > 0 && behind <= ${#typed})) && typed=${typed:0:${#typed}-behind}
    words[${#words[@]} - 1]=$typed

    local -a answer=()
    mapfile -t answer < <("${COMP_WORDS[0]/#\~/$HOME}" complete-words --quoted -- "${words[@]:1}" 2>/dev/null)
    COMPREPLY=()
    if [[ ${answer[0]} == files ]]; then
        compopt -o default 2>/dev/null
    fi

    # Only what stands behind the last = or : is replaced.
    local kept=$typed
    if [[ $typed != [\"\']* && $typed == *[:=]* && $COMP_WORDBREAKS == *[:=]* ]]; then
        kept=${typed%"${typed##*[:=]}"}
    else
        kept=
    fi
    for word in "${answer[@]:1}"; do
        case $typed in
            \"*) word=${word//\\/\\\\} word=${word//\"/\\\"} word=${word//\$/\\\$} word=${word//\`/\\\`} ;;
            \'*) word=${word//\'/\'\\\'\'} ;;
            *) printf -v word %q "$word" ;;
        esac
        COMPREPLY+=("${word#"$kept"}")
    done
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *[.=] ]]; then
        compopt -o nospace 2>/dev/null
    fi
    return 0
}

complete -F _tavo tavo
)script";

constexpr std::string_view zshScript = R"script(#compdef tavo
# Completes the lines of tavo in zsh.

_tavo() {
    local -a answer
    answer=("${(@f)$("${(Q)words[1]/#\~/$HOME}" complete-words -- "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)}")
    local -a whole=() begun=()
    local word
    for word in "${(@)answer[2,-1]}"; do
        if [[ $word == *[.=] ]]; then
            begun+=("$word")
        elif [[ -n $word ]]; then
            whole+=("$word")
        fi
    done
    local found=1
    (($#whole)) && compadd -- "${(@)whole}" && found=0
    (($#begun)) && compadd -S '' -- "${(@)begun}" && found=0
    if [[ ${answer[1]} == files ]]; then
        [[ $PREFIX == --*=* ]] && compset -P '*='
        _files && found=0
    fi
    return found
}

if [[ $funcstack[1] == _tavo ]]; then
    _tavo "$@"
else
    compdef _tavo tavo
fi
)script";

constexpr std::string_view fishScript = R"script(# Completes the lines of tavo in fish.

function __tavo_complete
    set -l words (commandline -opc)
    set -l typed (commandline -ct | string unescape)
    set -l answer (command $words[1] complete-words -- $words[2..-1] "$typed" 2>/dev/null)
    if test "$answer[1]" = files
        set -l option (string match -r -- '^--[^=]+=' "$typed")
        for file in (__fish_complete_path (string replace -r -- '^--[^=]+=' '' "$typed"))
            echo -- "$option"$file
        end
    end
    string join \n -- $answer[2..-1]
end

complete -c tavo -f -a '(__tavo_complete)'
)script";

} // namespace

CompletionScript completionScript(std::string_view shell) {
    if (shell == "bash")
        return {shell, "tavo", bashScript};
    if (shell == "zsh")
        return {shell, "_tavo", zshScript};
    if (shell == "fish")
        return {shell, "tavo.fish", fishScript};
    throw std::invalid_argument("no script for this shell");
}

} // namespace TAVO::cli
