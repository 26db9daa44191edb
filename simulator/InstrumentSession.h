// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/AttributeTable.h"
#include "simulator/BenchResource.h"
#include "visa/ResourceName.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace simulator {

class ResourceManagerSession;

/// A session to an instrument, which knows one question: *IDN?. Safe from several threads.
class InstrumentSession
{
public:
    /// The name is what the resource string says, the manager the session it was opened on, and
    /// its handle the one that the client knows it by.
    InstrumentSession(std::shared_ptr<ResourceManagerSession> manager, ViSession managerHandle,
                      const visa::ResourceName& name, std::string identification);

    ResourceManagerSession& manager() const { return *m_manager; }
    AttributeTable& attributes() { return m_attributes; }

    /// Takes a message. The question *IDN? (either case, line ends around it ignored) readies the
    /// answer with a line feed behind it; any other message readies nothing. What was left of an
    /// earlier answer is lost.
    void write(std::string_view message);

    /// Takes up to the given number of bytes of the answer into text. VI_ERROR_TMO where there is
    /// no answer, VI_SUCCESS_MAX_CNT where some of it is left, else VI_SUCCESS. An enabled
    /// termination character (VI_ATTR_TERMCHAR_EN) ends a read with VI_SUCCESS_TERM_CHAR.
    ViStatus read(std::size_t most, std::string& text);

private:
    std::shared_ptr<ResourceManagerSession> m_manager;
    const std::string m_identification;
    AttributeTable m_attributes;
    /// Guards what follows.
    std::mutex m_mutex;
    std::string m_answer;
};

} // namespace simulator
