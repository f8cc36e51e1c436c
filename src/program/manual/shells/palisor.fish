# Completion for fish.

function __palisor_list
    switch "$argv"
@lists@
    end
end

function __palisor_offer
    set -l words (commandline -opc)
    set -l current (commandline -ct)
    set -l product (string replace -r '.*/' '' -- $words[1])
    set -l program $words[1]
    set -l waiting
    set -l given
    if test $product = palisor-doctor
        set given doctor
    end
    for word in $words[2..-1]
        if test -n "$waiting"
            if test $waiting = --product
                set product $word
            end
            set waiting
        else if string match -q -- '--product=*' $word
            set product (string replace -- '--product=' '' $word)
        else if string match -q -- '-*' $word; and test "$given[1]" != settings
            if test -n "$(__palisor_list after $word)"
                set waiting $word
            end
        else
            set -a given $word
        end
    end

    set -l list
    if test -n "$waiting"
        set list after $waiting
    else if test "$given[1]" = doctor
        set list doctor
    else if string match -q -- '-*' $current; and test (count $given) -lt 3
        if test (count $given) = 0
            __palisor_list start
        end
        set list options
    else if test (count $given) = 0
        set list commands
    else if test (count $given) = 1
        set list after $given
    else if test (count $given) = 2; and test $given[1] = settings; and test $given[2] != list
        set list settings $product
    else if test (count $given) = 3; and test $given[2] = set
        set list value $given[3]
    end

    set -l offered (__palisor_list $list)
    switch (string trim -- "$offered")
        case FILE
            __fish_complete_path $current
        case DIR
            __fish_complete_directories $current
        case MONITOR
            type -q $program; and $program --product $product status 2>/dev/null |
                string replace -rf '^monitor ([^ ]*) .*' '$1'
        case '*'
            string collect -- $offered
    end
end

for program in @programs@
    complete -c $program -f -a '(__palisor_offer)'
end
