# Completion for bash.

_palisor_list() {
    case $1 in
@lists@
    esac
}

_palisor() {
    local current=${COMP_WORDS[COMP_CWORD]} product=${COMP_WORDS[0]##*/} waiting= offered= word index
    local -a given=()
    if [ "$product" = palisor-doctor ]; then given=(doctor); fi
    for ((index = 1; index < COMP_CWORD; ++index)); do
        word=${COMP_WORDS[index]}
        # "--product=NAME" comes as three words, or as one where the user has set readline so.
        if [ "$word" = = ]; then
            continue
        elif [ "$waiting" ]; then
            if [ "$waiting" = --product ]; then product=$word; fi
            waiting=
        elif [[ $word == --product=* ]]; then
            product=${word#*=}
        elif [[ $word == -* && ${given[0]} != settings ]]; then
            if [ "$(_palisor_list "after $word")" ]; then waiting=$word; fi
        else
            given+=("$word")
        fi
    done
    if [ "$current" = = ]; then current=; fi

    if [ "$waiting" ]; then
        offered=$(_palisor_list "after $waiting")
    elif [[ ${given[0]} == doctor ]]; then
        offered=$(_palisor_list doctor)
    elif [[ $current == -* && ${#given[@]} -lt 3 ]]; then
        offered=$(_palisor_list options)
        if [ ${#given[@]} = 0 ]; then offered+=$'\n'$(_palisor_list start); fi
    elif [ ${#given[@]} = 0 ]; then
        offered=$(_palisor_list commands)
    elif [ ${#given[@]} = 1 ]; then
        offered=$(_palisor_list "after ${given[0]}")
    elif [[ ${#given[@]} = 2 && ${given[0]} == settings && ${given[1]} != list ]]; then
        offered=$(_palisor_list "settings $product")
    elif [[ ${#given[@]} = 3 && ${given[1]} == set ]]; then
        offered=$(_palisor_list "value ${given[2]}")
    fi

    local IFS=$'\n'
    case $offered in
    FILE) COMPREPLY=($(compgen -f -- "$current")) ;;
    DIR) COMPREPLY=($(compgen -d -- "$current")) ;;
    MONITOR)
        offered=$("${COMP_WORDS[0]}" --product "$product" status 2>/dev/null |
            sed -n 's/^monitor \([^ ]*\) .*/\1/p')
        COMPREPLY=($(compgen -W "$offered" -- "$current"))
        ;;
    *) COMPREPLY=($(compgen -W "$offered" -- "$current")) ;;
    esac
}

complete -o filenames -F _palisor @programs@
