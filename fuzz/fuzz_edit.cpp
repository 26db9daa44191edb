// SPDX-License-Identifier: MIT
// An edit of a file: the reader judges what it means before and after. The first bytes choose the
// edit; the next one whether the text is made of the rest by a generator or is the rest.

#include "fuzz/Judgement.h"
#include "tests/document/EditJudgement.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const FuzzedFile s_file;
    ByteSource source(asText(data, size));
    const AnyEdit edit = generateEdit(source);
    const bool isGenerated = source.choose(2) == 0;
    const std::string text =
        isGenerated ? generateText(source)
                    : ":QvVisaConfigurationFileVersion01\n" + std::string(source.rest());
    const std::string wrong = judgeEdit(text, edit, s_file.path());
    require(wrong.empty(), wrong.c_str());
    return 0;
}
