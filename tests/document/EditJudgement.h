// SPDX-License-Identifier: MIT
#pragma once

#include "document/EntryEdits.h"
#include "tests/support/FileContents.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Bytes that decide what a generator makes; zeros when they are used up.
class ByteSource
{
public:
    explicit ByteSource(std::string_view bytes) : m_bytes(bytes) {}

    std::uint8_t next();
    /// A number less than count.
    std::size_t choose(std::size_t count) { return next() % count; }
    std::string_view rest() const { return m_bytes; }

private:
    std::string_view m_bytes;
};

/// A text with the version header that has names and resources in different cases, free spacing,
/// CRLF, keys with numbers that are cut or too large, bytes of every kind, and sometimes no last
/// line feed.
std::string generateText(ByteSource& source);

/// An edit with its meaning.
struct AnyEdit
{
    enum class Kind
    {
        Set,
        Prune,
        Remove,
        Rename,
    };

    Kind kind = Kind::Set;
    QvVisa::WantedEntries wanted;
    QvVisa::UnwantedEntries unwanted;
    std::string oldName;
    std::string newName;

    QvVisa::EditResult apply(const QvVisa::Document& document) const;

    /// What the edit is to make of a file that says this.
    FileContents applied(FileContents contents) const;
};

AnyEdit generateEdit(ByteSource& source);

/// Writes the text to the path, edits it, and compares what the reader makes of it. Returns what is
/// wrong; empty if nothing is. The text must have the version header.
std::string judgeEdit(const std::string& text, const AnyEdit& edit, const std::string& path);
