// SPDX-License-Identifier: MIT
#pragma once

#include "resourcemanager/VisaCalls.h"
#include "visa/StatusNames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace support {

/// The calls of a VISA library, linked or loaded; those that it lacks are null.
struct VisaFunctions
{
    decltype(&::viOpenDefaultRM) openDefaultRM = nullptr;
    decltype(&::viFindRsrc) findRsrc = nullptr;
    decltype(&::viFindNext) findNext = nullptr;
    decltype(&::viParseRsrc) parseRsrc = nullptr;
    decltype(&::viParseRsrcEx) parseRsrcEx = nullptr;
    decltype(&::viOpen) open = nullptr;
    decltype(&::viClose) close = nullptr;
    decltype(&::viSetAttribute) setAttribute = nullptr;
    decltype(&::viGetAttribute) getAttribute = nullptr;
    decltype(&::viStatusDesc) statusDesc = nullptr;
    decltype(&::viWrite) write = nullptr;
    decltype(&::viRead) read = nullptr;
    decltype(&::viDisableEvent) disableEvent = nullptr;
    decltype(&::viDiscardEvents) discardEvents = nullptr;
};

/// Makes calls and answers them in words, the status first: "VI_SUCCESS 2 ASRL1::INSTR". Each
/// method checks that a failing call has not written its output arguments, and that no call writes
/// past the end of a buffer.
class VisaClient
{
public:
    explicit VisaClient(const VisaFunctions& functions) : visa(functions) {}

    /// A client's buffer whose every character shows whether it was written.
    struct Buffer
    {
        Buffer() { characters.fill('~'); }
        std::string text() const
        {
            return {characters.begin(), std::find(characters.begin(), characters.end(), '\0')};
        }
        bool isUntouched() const { return characters == Buffer().characters; }
        ViChar* data() { return characters.data(); }

        // One more than a description takes.
        std::array<ViChar, VI_FIND_BUFLEN + 1> characters;
    };

    ViSession openManager() const
    {
        ViSession session = VI_NULL;
        EXPECT_EQ(visa::statusName(visa.openDefaultRM(&session)), "VI_SUCCESS");
        return session;
    }

    /// "STATUS COUNT DESCRIPTION".
    std::string find(ViSession session, const char* expression, ViFindList* list = nullptr) const
    {
        ViFindList found = untouched;
        ViUInt32 count = untouched;
        Buffer buffer;
        const ViStatus status = visa.findRsrc(session, expression, &found, &count, buffer.data());
        if (status < 0) {
            EXPECT_TRUE(found == untouched && count == untouched && buffer.isUntouched());
            return visa::statusName(status);
        }
        if (list != nullptr) {
            *list = found;
        }
        EXPECT_EQ(buffer.characters.back(), '~');
        return visa::statusName(status) + ' ' + std::to_string(count) + ' ' + buffer.text();
    }

    /// "STATUS DESCRIPTION".
    std::string next(ViFindList list) const
    {
        Buffer buffer;
        const ViStatus status = visa.findNext(list, buffer.data());
        EXPECT_TRUE(status >= 0 || buffer.isUntouched());
        EXPECT_EQ(buffer.characters.back(), '~');
        return visa::statusName(status) + (status < 0 ? "" : ' ' + buffer.text());
    }

    /// All that a search finds, read to the end of its list, which is closed.
    std::vector<std::string> list(ViSession session, const char* expression) const
    {
        const std::string success = "VI_SUCCESS ";
        ViFindList findList = VI_NULL;
        const std::string first = find(session, expression, &findList);
        if (findList == VI_NULL) {
            EXPECT_EQ(first, "VI_ERROR_RSRC_NFOUND");
            return {};
        }
        std::vector<std::string> found{first.substr(first.find(' ', success.size()) + 1)};
        std::string step = next(findList);
        for (; step.compare(0, success.size(), success) == 0; step = next(findList)) {
            found.push_back(step.substr(success.size()));
        }
        EXPECT_EQ(step, "VI_ERROR_RSRC_NFOUND");
        EXPECT_EQ(first, success + std::to_string(found.size()) + ' ' + found.front());
        EXPECT_EQ(close(findList), "VI_SUCCESS");
        return found;
    }

    /// "STATUS TYPE NUMBER", the same from both calls.
    std::string parse(ViSession session, const char* resource) const
    {
        ViUInt16 type = untouched;
        ViUInt16 number = untouched;
        const ViStatus status = visa.parseRsrc(session, resource, &type, &number);
        EXPECT_TRUE(status >= 0 || (type == untouched && number == untouched));
        return visa::statusName(status) +
               (status < 0 ? "" : ' ' + std::to_string(type) + ' ' + std::to_string(number));
    }

    /// "STATUS TYPE NUMBER CLASS NAME ALIAS".
    std::string parseInFull(ViSession session, const std::string& resource) const
    {
        ViUInt16 type = untouched;
        ViUInt16 number = untouched;
        std::array<Buffer, 3> texts;
        const ViStatus status = visa.parseRsrcEx(session, resource.c_str(), &type, &number,
                                                 texts[0].data(), texts[1].data(), texts[2].data());
        std::string result = visa::statusName(status);
        if (status >= 0) {
            result += ' ' + std::to_string(type) + ' ' + std::to_string(number);
        } else {
            EXPECT_TRUE(type == untouched && number == untouched);
        }
        for (const Buffer& text : texts) {
            EXPECT_TRUE(status >= 0 || text.isUntouched());
            EXPECT_EQ(text.characters.back(), '~');
            result += status < 0 ? "" : ' ' + text.text();
        }
        return result;
    }

    /// The status; the handle goes to instrument.
    std::string open(ViSession session, const char* resource, ViSession& instrument,
                     ViAccessMode accessMode = 0) const
    {
        ViSession opened = untouched;
        const ViStatus status = visa.open(session, resource, accessMode, 0, &opened);
        EXPECT_EQ(status < 0, opened == untouched);
        instrument = status < 0 ? VI_NULL : opened;
        return visa::statusName(status);
    }

    std::string close(ViObject object) const { return visa::statusName(visa.close(object)); }

    std::string set(ViObject object, ViAttr attribute, ViAttrState value) const
    {
        return visa::statusName(visa.setAttribute(object, attribute, value));
    }

    const VisaFunctions visa;

    /// What an output argument contains before the call; no result in the tests is equal to it.
    static constexpr ViUInt16 untouched = 31999;
};

} // namespace support
