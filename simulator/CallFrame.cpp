// SPDX-License-Identifier: MIT
#include "simulator/CallFrame.h"

#include "simulator/FindList.h"
#include "simulator/InstrumentSession.h"
#include "simulator/ResourceManagerSession.h"

namespace simulator {

HandleTable& handles()
{
    static HandleTable table;
    return table;
}

} // namespace simulator
