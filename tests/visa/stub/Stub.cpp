// SPDX-License-Identifier: MIT
// A VISA library without resources. A macro such as QVVISA_LACKS_viClose leaves out a call.
#include "tests/visa/stub/Stub.h"

#include <cstdlib>
#include <mutex>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Guards what follows. The last call is read when no call runs.
std::mutex s_mutex;
stub::Call s_lastCall;
ViStatus s_status = VI_SUCCESS;

/// Throws what no caller expects, if the environment wants it at this point.
void throwAt(std::string_view point)
{
    const char* wanted = std::getenv("QVVISA_STUB_THROWS_AT");
    if (wanted != nullptr && point == wanted) {
        throw 7;
    }
}

/// One byte for each time that the library is loaded, in a file that the environment names.
[[gnu::constructor]] void noteLoad()
{
    throwAt("load");
    const char* path = std::getenv("QVVISA_STUB_LOADS");
    if (path == nullptr) {
        return;
    }
    const int file = ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file < 0 || ::write(file, "x", 1) != 1) {
        std::abort();
    }
    ::close(file);
}

/// The whole body of a call.
template <typename... Arguments>
ViStatus answer(const char* name, Arguments... arguments)
{
    throwAt("call");
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_lastCall = {name, {stub::word(arguments)...}, s_lastCall.total + 1};
    return s_status;
}

} // namespace

const stub::Call* stubLastCall()
{
    return &s_lastCall;
}

void stubSetStatus(ViStatus status)
{
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_status = status;
}

#define QVVISA_EXPORT [[gnu::visibility("default")]]

#ifndef QVVISA_LACKS_viOpenDefaultRM
QVVISA_EXPORT ViStatus viOpenDefaultRM(ViSession* session)
{
    return answer("viOpenDefaultRM", session);
}
#endif

#ifndef QVVISA_LACKS_viSetAttribute
QVVISA_EXPORT ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value)
{
    return answer("viSetAttribute", object, attribute, value);
}
#endif

#ifndef QVVISA_LACKS_viFindRsrc
QVVISA_EXPORT ViStatus viFindRsrc(ViSession session, ViConstString expression, ViFindList* findList,
                                  ViUInt32* count, ViChar* description)
{
    return answer("viFindRsrc", session, expression, findList, count, description);
}
#endif

#ifndef QVVISA_LACKS_viFindNext
QVVISA_EXPORT ViStatus viFindNext(ViFindList findList, ViChar* description)
{
    return answer("viFindNext", findList, description);
}
#endif

#ifndef QVVISA_LACKS_viParseRsrc
QVVISA_EXPORT ViStatus viParseRsrc(ViSession session, ViConstString resource, ViUInt16* type,
                                   ViUInt16* number)
{
    return answer("viParseRsrc", session, resource, type, number);
}
#endif

#ifndef QVVISA_LACKS_viClose
QVVISA_EXPORT ViStatus viClose(ViObject object)
{
    return answer("viClose", object);
}

ViStatus stubCloseItself(ViObject object)
{
    return viClose(object);
}
#endif
