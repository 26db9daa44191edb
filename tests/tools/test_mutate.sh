#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# tools/mutate tells a fault that is caught from one that is not, cannot be built or is out of date.
#   test_mutate.sh SOURCES
set -euo pipefail
sources=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
unset QVVISA_DEADLINE_SECONDS

faults=0

# A project of two words and a test for one of them.
mkdir -p "$scratch"/tools/mutations
cd "$scratch"
git init -q
echo build/ >.gitignore
cat >CMakeLists.txt <<'TEXT'
cmake_minimum_required(VERSION 3.19)
project(Words NONE)
enable_testing()
add_custom_target(words COMMAND grep -q . words.txt WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
add_test(NAME words COMMAND grep -q good words.txt)
add_test(NAME "words.each/of(them)  # with blanks" COMMAND grep -qv evil words.txt)
set_tests_properties(words "words.each/of(them)  # with blanks" PROPERTIES WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
TEXT
cp CMakeLists.txt CMakeLists.kept

# list WORDS [FAULT]...: what stands in the project's file, and in its list.
list() {
    cp CMakeLists.kept CMakeLists.txt
    printf '%s\n' "$1" >words.txt
    shift
    printf '# A list.\n\nfile words.txt\ntests words\n' >tools/mutations/words.txt
    for fault in "$@"; do
        printf '\n%s\n' "$fault" >>tools/mutations/words.txt
    done
}

# expect RESULT TEXT ARGUMENT...: how the script ends, and a line that it prints.
expect() {
    local result=$1 text=$2 seen=0
    shift 2
    "$sources/tools/mutate" --sources "$scratch" --jobs 2 "$@" >output 2>&1 </dev/null || seen=$?
    if [ $seen -ne "$result" ] || ! grep -qxF -- "$text" output; then
        echo "expected $result and the line '$text'; it ended with $seen and said:"
        cat output
        faults=$((faults + 1))
    fi
}

caught=$'The good is bad\n- good\n+ bad'
unseen=$'The odd is strange\n- odd\n+ strange'
unbuilt=$'Nothing is left\n- good, odd\n+'
unknown=$'The evil is good\n- evil\n+ good'
idle=$'The good is good\n- good\n+ good'

list 'good, odd' "$caught"
expect 0 'caught words.txt: The good is bad by words'
expect 0 '1 of 1 faults find their place' --check
expect 0 'words.txt: The good is bad (tests: words)' --list
[ "$(cat words.txt)" = 'good, odd' ] || {
    echo 'the sources were touched'
    faults=$((faults + 1))
}

list 'good, odd' $'The odd is evil\n- odd\n+ evil'
expect 0 'caught words.txt: The odd is evil by words.each/of(them)'

list 'good, odd' "$caught" "$unseen" "$unbuilt"
expect 1 'caught words.txt: The good is bad by words'
expect 1 'SURVIVED words.txt: The odd is strange (tests: words)'
expect 1 'does not build: words.txt: Nothing is left'
expect 0 'caught words.txt: The good is bad by words' 'good is'
expect 1 'no fault of that name' 'neither nor'

for stale in 'good, good' 'odd'; do
    list "$stale" "$caught"
    expect 1 '0 of 1 faults find their place' --check
done
list 'good, odd' "$unknown" "$caught"
expect 1 'stale words.txt: The evil is good: its old text stands there 0 times'
expect 1 'caught words.txt: The good is bad by words'
expect 1 '1 of 2 faults find their place' --check
list 'good' "$idle"
expect 1 'stale words.txt: The good is good: it changes nothing' --check
list 'good' "$caught" "$caught"
expect 1 'words.txt: The good is bad: stands in the lists 2 times' --check
list 'good' $'The good has no tests\ntests\n- good\n+ bad'
expect 1 "words.txt: The good has no tests: no line of a fault: 'tests'" --check

# What fails without a fault, or does not run, proves nothing.
list 'bad, odd' "$unseen"
expect 1 'fails without a fault: words'
list 'good' "$caught"
sed -i '/add_test\|set_tests/d' CMakeLists.txt
expect 1 'these tests did not run: words'

[ $faults -eq 0 ]
