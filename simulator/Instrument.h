// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/Sessions.h"
#include "visa/ResourceName.h"

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

namespace simulator {

/// A session to an instrument, which answers one question: *IDN?. Any thread.
class Instrument : public resourcemanager::Object
{
public:
    Instrument(const visa::ResourceName& name, std::string identification);

    /// Takes a message. The question *IDN? (in any case, white space around it ignored) prepares
    /// the answer, ending in a line feed; any other message none. The rest of an earlier answer is
    /// lost.
    void write(std::string_view message);

    /// Moves up to that many bytes of the answer into text. VI_ERROR_TMO without an answer,
    /// VI_SUCCESS_MAX_CNT when some of it is left, else VI_SUCCESS. An enabled termination
    /// character (VI_ATTR_TERMCHAR_EN) ends a read with VI_SUCCESS_TERM_CHAR.
    ViStatus read(std::size_t most, std::string& text);

private:
    const std::string m_identification;
    /// Guards what follows.
    std::mutex m_mutex;
    std::string m_answer;
};

} // namespace simulator
