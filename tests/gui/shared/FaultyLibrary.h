// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace guitest {

/// A VISA library that misbehaves: the bench that makes the stand-in behave so, and what the find
/// dialog and the properties dialog have to list with it.
class FaultyLibrary
{
public:
    enum Call
    {
        Open,
        SetAttribute,
        Find,
        Next,
        Parse,
        Close
    };
    enum Answer
    {
        Success,
        Error,
        Warning
    };

    /// Three serial ports, in the order ASRL3, ASRL1, ASRL2, and six other instruments, g1 to g6.
    FaultyLibrary();

    /// bytes: as they stand in a bench file. port: the interface number; none is no serial port.
    void addResource(const std::string& bytes, const QString& text,
                     std::optional<int> port = std::nullopt);
    void removeResources() { m_resources.clear(); }

    /// at: the how-manieth call of the kind, from 1; 0 for each.
    void answer(Call call, Answer answer, int at = 0);
    void tellCount(int count);
    void takeTime();
    /// The search for everything, or its step next, comes back only when the file "go" is there.
    void holdSearch();
    void holdNext(int next);

    std::string bench() const;

    /// What the find dialog lists.
    QStringList scanned() const;

    /// What the properties dialog lists, as TEXT=NUMBER.
    QStringList ports() const;

    /// After how many calls a scan is held up; none where it runs through.
    std::optional<std::size_t> callsBeforeHold() const;

private:
    struct Resource
    {
        std::string line;
        QString text;
        std::optional<int> port;
    };
    struct Rule
    {
        Call call;
        Answer answer;
        int at;
    };

    Answer answerTo(Call call, int nth) const;
    std::vector<Resource> serialPorts() const;
    /// What the search for so many resources tells; none when it fails.
    std::optional<int> countOf(std::size_t hits) const;

    std::vector<Resource> m_resources;
    std::string m_settings;
    std::vector<Rule> m_rules;
    std::optional<int> m_count;
    std::optional<int> m_heldNext;
    bool m_isSearchHeld = false;
};

} // namespace guitest
