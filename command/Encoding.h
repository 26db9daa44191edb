// SPDX-License-Identifier: MIT
#pragma once

#include "config/Encoding.h"
