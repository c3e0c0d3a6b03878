# bash completion of keld2. Commands, options and their values are those that its --help names,
# devices and steps those of its catalogue.

# The subcommands of a command.
_keld2_subcommands() { "$@" --help 2>/dev/null | awk '/^Subcommands:/ { on = 1; next } /^[^ ]/ { on = 0 } on && /^  [a-z]/ { print $1 }'; }

# The options that a command takes, those of the program with them, a line each: its names with
# commas, "value" where it has one, the values that its text lists ("TEXT: a, b or c").
_keld2_options() {
    { "$@" --help; "$1" --help; } 2>/dev/null | awk '
        /^  -/ {
            names = $1; sub(/[{].*/, "", names)
            value = $2 ~ /^[A-Z][A-Z]+(:|$)/ ? "value" : "none"
            text = $0
            if (!sub(/^  [^ ].*  /, "", text)) { getline text }
            gsub(/ *\([^)]*\)/, "", text); sub(/.*: /, "", text); sub(/^ */, "", text)
            count = split(text, part, /, | or /); values = ""
            for (i = 1; i <= count && count > 1; i++) {
                if (part[i] ~ / /) { values = ""; break }
                sub(/\[.*/, "", part[i]); values = values " " part[i]
            }
            print names, value values
        }'
}
# The line of one option; nothing for a word that is none.
_keld2_option() { _keld2_options "${command[@]}" | awk -v name="$1" '("," $1 ",") ~ ("," name ",") { print; exit }'; }

_keld2_devices() { "${command[0]}" devices list 2>/dev/null | awk '{ print $1 }'; }
# The operations of the device, or where none is named all, which are the commands ahead of auto.
_keld2_steps() {
    local named
    named=$("${command[0]}" devices info "$device" 2>/dev/null | sed -n 's/^operations: //p')
    if [[ $named ]]; then echo "${named//,/}"; else _keld2_subcommands "${command[0]}" | sed '/^auto$/,$d'; fi
}

# The words of the line up to the cursor, in the array words. Bash takes : and = for words of their
# own; what no blank parts is one word here.
_keld2_join() {
    local rest=${COMP_LINE:0:COMP_POINT} word blanks i
    words=()
    for ((i = 0; i <= COMP_CWORD; i++)); do
        blanks=${rest%%[^[:blank:]]*}
        rest=${rest:${#blanks}}
        word=${COMP_WORDS[i]}
        ((i == COMP_CWORD)) && word=$rest
        if [[ $blanks || $i == 0 ]]; then words+=("$word"); else words[-1]+=$word; fi
        rest=${rest:${#word}}
    done
}

# Offers the choices that begin with what stands behind head in the current word. Bash replaces
# the word from its last : or = on, so what is ahead of that is left out.
_keld2_offer() {
    local head=$1 choices=$2 kept=$1 reply
    while [[ $kept && ! ($kept == *[:=] && $COMP_WORDBREAKS == *"${kept: -1}"*) ]]; do kept=${kept%?}; done
    while IFS= read -r reply; do
        [[ $reply ]] && COMPREPLY+=("${head:${#kept}}$reply")
    done < <(compgen -W "$choices" -- "${current:${#head}}")
}

# The value of an option, behind head in the current word.
_keld2_value() {
    local option=$1 head=$2 value=${current:${#2}} line
    line=$(_keld2_option "$option")
    [[ $line == *' value'* ]] || return 0
    case $option in
        -d | --device) _keld2_offer "$head" "$(_keld2_devices)" ;;
        --steps)
            [[ $value == *,* ]] && head+=${value%,*},
            compopt -o nospace 2>/dev/null || :
            _keld2_offer "$head" "$(_keld2_steps)"
            ;;
        -p | --programmer)
            case $value in
                *image=*) ;; # a file
                sim:*)
                    compopt -o nospace 2>/dev/null || :
                    _keld2_offer "${head}sim:" 'image= fault='
                    ;;
                *) _keld2_offer "$head" "${line#* value}" ;;
            esac
            ;;
        *) _keld2_offer "$head" "${line#* value}" ;;
    esac
}

_keld2() {
    local -a words
    _keld2_join
    local current=${words[-1]} previous='' word device=${KELD2_DEVICE-} i
    local -a command=("${words[0]}")
    COMPREPLY=()
    # the command so far; previous stays the option whose value the current word is
    for ((i = 1; i < ${#words[@]} - 1; i++)); do
        word=${words[i]}
        if [[ $previous ]]; then
            [[ $previous == -d || $previous == --device ]] && device=$word
            previous=''
        elif [[ $word == --device=* ]]; then
            device=${word#*=}
        elif [[ $word == -* ]]; then
            [[ $word != *=* && $(_keld2_option "$word") == *' value'* ]] && previous=$word
        elif _keld2_subcommands "${command[@]}" | grep -qxF -- "$word"; then
            command+=("$word")
        fi
    done
    if [[ $previous ]]; then
        _keld2_value "$previous" ''
    elif [[ $current == --*=* ]]; then
        _keld2_value "${current%%=*}" "${current%%=*}="
    elif [[ $current == -* ]]; then
        _keld2_offer '' "$(_keld2_options "${command[@]}" | awk '{ gsub(/,/, " ", $1); print $1 }')"
    elif [[ ${command[*]:1} == 'devices info' ]]; then
        _keld2_offer '' "$(_keld2_devices)"
    else
        _keld2_offer '' "$(_keld2_subcommands "${command[@]}")"
    fi
}

# Where nothing is offered the shell completes file names.
complete -o bashdefault -o default -F _keld2 keld2
