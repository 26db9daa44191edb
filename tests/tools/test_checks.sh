#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# tools/check-layers and tools/check-spdx pass a sound tree and name the file that breaks a rule.
#   test_checks.sh SOURCES
set -euo pipefail
sources=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0

# expect RESULT TEXT TOOL: how the tool ends on the tree, and a text that it prints.
expect() {
    local result=$1 text=$2 tool=$3 seen=0
    "$sources/tools/$tool" "$scratch/tree" >"$scratch/output" 2>&1 || seen=$?
    if [ $seen -ne "$result" ] || { [ -n "$text" ] && ! grep -qF "$text" "$scratch/output"; }; then
        echo "$tool: expected $result and '$text', but it ended with $seen and printed:"
        cat "$scratch/output"
        failures=$((failures + 1))
    fi
}

# tree [FILE LINE]: a sound tree without a .git, with one line added.
tree() {
    rm -rf "$scratch/tree"
    mkdir -p "$scratch"/tree/{config,document,model,gui}
    cd "$scratch/tree"
    printf '// SPDX-License-Identifier: MIT\n#include <string>\n' | tee config/A.h >model/A.h
    printf '// SPDX-License-Identifier: MIT\n#include "model/A.h"\n' >gui/A.h
    [ $# -eq 0 ] || echo "$2" >>"$1"
}

tree
expect 0 '' check-layers
expect 0 '' check-spdx
tree config/A.h '#  include "model/A.h"'
expect 1 'config/A.h:3: config may not include model/A.h' check-layers
tree config/A.h '#include <QString>'
expect 1 'config/A.h:3: config is Qt-free but includes QString' check-layers
tree document/A.h '#include "lint/A.h"'
expect 1 'document/A.h:1: document may not include lint/A.h' check-layers
tree model/A.h '#include <QtWidgets/QDialog>'
expect 1 'model/A.h:3: model uses Qt Core only' check-layers
tree script '#!/bin/sh'
expect 1 'script: no SPDX-License-Identifier line' check-spdx
tree
: >config/B.cpp
printf 'int x;\nint y;\n// SPDX-License-Identifier: MIT\n' >config/C.cpp
expect 1 'config/B.cpp: no SPDX-License-Identifier line' check-spdx
expect 1 'config/C.cpp: no SPDX-License-Identifier line' check-spdx
rm -r "$scratch/tree" && mkdir "$scratch/tree"
expect 1 'no source folder here' check-layers
expect 1 'no source file here' check-spdx

[ $failures -eq 0 ]
