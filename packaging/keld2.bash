# bash completion of keld2. Commands and options are those that its --help names, devices those of
# "keld2 devices list".

_keld2_help() { "${_keld2_words[@]}" --help 2>/dev/null; }

# The words that may follow: subcommands, and options where the word begins with a dash.
_keld2_subcommands() { _keld2_help | awk '/^Subcommands:/ { on = 1; next } /^[^ ]/ { on = 0 } on && /^  [a-z]/ { print $1 }'; }
_keld2_options() { { _keld2_help; "${_keld2_words[0]}" --help 2>/dev/null; } | grep -oE '^  (-[^ ]*)' | grep -oE -- '--?[a-z-]+'; }

_keld2() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} word i
    local -a _keld2_words=("${COMP_WORDS[0]}")
    # the command so far: words that are subcommands of what stands before them
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        case $word in
            -d | --device | -p | --programmer | --format | --language | --progress | --on-box) ((i++)) ;;
            -*) ;;
            *) if _keld2_subcommands | grep -qxF -- "$word"; then _keld2_words+=("$word"); else break; fi ;;
        esac
    done
    COMPREPLY=()
    local choices=
    case $previous in
        -d | --device) choices=$("${COMP_WORDS[0]}" devices list 2>/dev/null | awk '{ print $1 }') ;;
        --progress) choices='auto bar lines none' ;;
        --on-box) choices='ok cancel abort retry ignore' ;;
        --format) choices='bin hex srec jed' ;;
        --language) choices='en zh-cn zh-tw ko pl it nl pt tr hu ru' ;;
        -p | --programmer) choices=sim ;;
        *)
            if [[ $current == -* ]]; then
                choices=$(_keld2_options)
            elif [[ ${_keld2_words[*]:1} == 'devices info' ]]; then
                choices=$("${COMP_WORDS[0]}" devices list 2>/dev/null | awk '{ print $1 }')
            else
                choices=$(_keld2_subcommands)
            fi
            ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$current")
}

# Where nothing is offered the shell completes file names.
complete -o bashdefault -o default -F _keld2 keld2
