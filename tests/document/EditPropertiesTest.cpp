// SPDX-License-Identifier: MIT
#include "tests/document/EditJudgement.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

TEST(EditProperties, HoldForGeneratedTextsAndEdits)
{
    constexpr unsigned seed = 20;
    constexpr int texts = 1'000;
    constexpr std::size_t bytesForAText = 200;
    std::mt19937 random(seed);
    const support::TemporaryFolder folder;
    for (int i = 0; i < texts; ++i) {
        std::string bytes(bytesForAText, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random() & 0xFFU);
        }
        ByteSource source(bytes);
        const AnyEdit edit = generateEdit(source);
        const std::string text = generateText(source);
        const std::string wrong = judgeEdit(text, edit, folder.path() / "visa.conf");
        ASSERT_EQ(wrong, "") << "text " << i;
    }
}
