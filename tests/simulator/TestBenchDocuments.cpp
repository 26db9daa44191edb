// SPDX-License-Identifier: MIT
// The documentation, the sample and the built-in bench must be read without a message.

#include "resourcemanager/VisaCalls.h"
#include "simulator/BenchFile.h"
#include "tests/support/Files.h"
#include "visa/ResourceName.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

using simulator::BenchFile;
using simulator::BenchResource;

namespace {

const std::string sourceFolder = QVVISA_SOURCE_FOLDER;

/// The texts between ```bench and ```.
std::vector<std::string> examplesOf(const std::string& document)
{
    std::vector<std::string> examples;
    std::istringstream lines(document);
    bool isInside = false;
    for (std::string line; std::getline(lines, line);) {
        if (line == "```bench") {
            examples.emplace_back();
            isInside = true;
        } else if (line == "```") {
            isInside = false;
        } else if (isInside) {
            examples.back() += line + '\n';
        }
    }
    return examples;
}

void expectNoMessage(const BenchFile& file)
{
    for (const BenchFile::Message& message : file.messages()) {
        ADD_FAILURE() << message.line << ": " << message.text;
    }
}

} // namespace

TEST(BenchDocuments, EveryExampleIsRead)
{
    const auto examples = examplesOf(support::readFile(sourceFolder + "/docs/bench-file.md"));
    EXPECT_EQ(examples.size(), 4U);
    for (const std::string& example : examples) {
        SCOPED_TRACE(example);
        const BenchFile file = BenchFile::parse(example);
        expectNoMessage(file);
        EXPECT_FALSE(file.bench().resources().empty());
    }
}

TEST(BenchDocuments, NamesEveryCallAndLimit)
{
    const std::string document = support::readFile(sourceFolder + "/docs/bench-file.md");
    const auto expectNamed = [&](const std::string& text) {
        EXPECT_NE(document.find('`' + text + '`'), std::string::npos) << text;
    };
    for (const std::string_view name : resourcemanager::callNames) {
        expectNamed(std::string(name));
    }
    expectNamed(BenchResource().identification);
    EXPECT_NE(document.find("up to " + std::to_string(BenchFile::maximumRepeat)),
              std::string::npos);
    EXPECT_NE(document.find("up to " + std::to_string(BenchFile::maximumScanTime)),
              std::string::npos);
}

TEST(BenchDocuments, TheSampleHasResourceStringsAndAnIdentificationForEach)
{
    const BenchFile file = BenchFile::read(sourceFolder + "/simulator/sample-bench.txt");
    expectNoMessage(file);
    EXPECT_FALSE(file.bench().resources().empty());
    std::set<std::string> identifications{BenchResource().identification};
    for (const BenchResource& resource : file.bench().resources()) {
        EXPECT_TRUE(visa::parseResourceName(resource.description)) << resource.description;
        EXPECT_TRUE(identifications.insert(resource.identification).second)
            << resource.identification;
    }
}

TEST(BenchDocuments, TheBuiltInBenchIsReadWithoutMessages)
{
    expectNoMessage(BenchFile::parse(simulator::builtinBench));
}
