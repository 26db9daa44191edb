#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# tools/check-layers and tools/check-spdx pass a sound tree and fail each unsound one.
#   test_checks.sh SOURCES
set -euo pipefail
sources=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

faults=0

# A small sound checkout to spoil.
sound_tree() {
    rm -rf "$scratch/tree"
    mkdir -p "$scratch"/tree/{config,visa,model,gui,simulator}
    cd "$scratch/tree"
    git init -q
    local folder
    for folder in config visa model gui simulator; do
        printf '// SPDX-License-Identifier: MIT\n#include <string>\n' >$folder/Sound.h
    done
    echo '#include "config/Sound.h"' >>model/Sound.h
    echo '#include "model/Sound.h"' >>gui/Sound.h
    printf '#!/bin/sh\n# SPDX-License-Identifier: MIT\n' >script
}

passes() {
    local tool=$1 what=$2
    if ! "$sources/tools/$tool" "$scratch/tree" >"$scratch/output" 2>&1; then
        echo "$tool fails: $what"
        cat "$scratch/output"
        faults=$((faults + 1))
    fi
}

# fails TOOL WHERE: the tool must fail and name the place.
fails() {
    local tool=$1 where=$2
    if "$sources/tools/$tool" "$scratch/tree" >"$scratch/output" 2>&1; then
        echo "$tool does not see $where"
        faults=$((faults + 1))
    elif ! grep -qF "$where" "$scratch/output"; then
        echo "$tool does not name $where:"
        cat "$scratch/output"
        faults=$((faults + 1))
    fi
}

sound_tree
passes check-layers 'a sound tree'
passes check-spdx 'a sound tree'

# folder|include
for spoilt in 'config|<QString>' 'config|"model/Sound.h"' 'config|"visa/Sound.h"' 'visa|<QtCore/QString>' \
    'visa|"config/Sound.h"' 'model|"gui/Sound.h"' 'model|"visa/Sound.h"' 'model|<QtWidgets/QDialog>' \
    'model|"simulator/Sound.h"' 'gui|"simulator/Sound.h"' 'gui|"tests/support/Files.h"' \
    'simulator|"config/Sound.h"' 'visa|<qglobal.h>'; do
    sound_tree
    folder=${spoilt%%|*}
    echo "#  include ${spoilt#*|}" >>"$folder/Sound.h"
    fails check-layers "$folder/Sound.h:$(wc -l <"$folder/Sound.h")"
done

sound_tree
rm -r visa
fails check-layers 'no folder visa'

for file in config/Sound.h script; do
    sound_tree
    sed -i '/SPDX/d' $file
    fails check-spdx $file
done
sound_tree
rm -rf config visa model gui simulator script
fails check-spdx 'no file to look at'

[ $faults -eq 0 ]
