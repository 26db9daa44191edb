// SPDX-License-Identifier: MIT
#pragma once

#include "config/ConfigurationFile.h"
#include "tests/support/ConfigurationFixture.h"

#include <atomic>
#include <string>
#include <thread>

namespace support {

/// While it lives, another thread replaces the configuration file again and again, and the store
/// reads it. The 20 resources and 20 aliases of a file have one text, which is on the heap: a
/// reader of replaced tables reads freed memory.
class FileReplacer
{
public:
    explicit FileReplacer(ConfigurationFixture& configuration)
    {
        configuration.write(linesOf(0));
        QvVisa::ConfigurationFile::getInstance();
        m_thread = std::thread([this, &configuration] {
            for (int round = 1; !m_isDone; ++round) {
                configuration.replace(linesOf(round));
                QvVisa::ConfigurationFile::getInstance();
            }
        });
    }
    ~FileReplacer()
    {
        m_isDone = true;
        m_thread.join();
    }
    FileReplacer(const FileReplacer&) = delete;
    FileReplacer& operator=(const FileReplacer&) = delete;

    static std::string linesOf(int number)
    {
        const std::string text(100, static_cast<char>('a' + number % 26));
        std::string lines;
        for (int i = 0; i < 20; ++i) {
            lines.append(text).append("\nALIAS").append(std::to_string(i)).append("=");
            lines.append(text).append("\n");
        }
        return lines;
    }

private:
    std::atomic<bool> m_isDone{false};
    std::thread m_thread;
};

} // namespace support
