// SPDX-License-Identifier: MIT
// Reads a whole file and compares with the regular expressions; then saves, reads and saves again.

#include "config/ModernConfigurationFile.h"
#include "fuzz/Judgement.h"
#include "tests/support/OracleReader.h"

using QvVisa::ModernConfigurationFile;

namespace {

/// Reads the file and saves it with the same object.
FileContents readAndSave(const std::string& path, bool hasHeader)
{
    require(ModernConfigurationFile::isParseAble(path) == hasHeader,
            "isParseAble() misjudges the header");
    ModernConfigurationFile file(path);
    FileContents contents;
    file.parse(contents.aliases, contents.resources, contents.provider);
    require(file.wasRead(), "an existing file was not read");
    require(file.hadHeader() == hasHeader, "hadHeader() misjudges the header");
    require(contents.provider == file.getProviderId(), "two provider IDs");
    contents.gpib = file.getGpibPropertiesMap();
    contents.serial = file.getSerialPropertiesMap();
    file.save();
    return contents;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const FuzzedFile s_file;
    const std::string_view bytes = asText(data, size);
    s_file.write(bytes);

    const FileContents first = readAndSave(s_file.path(), beginsWithHeader(bytes));
    if (hasOnlyShortLines(bytes)) {
        OracleReader oracle;
        oracle.read(bytes);
        requireSame(first, oracle.contents(), "read differently from the expressions");
    }

    // A save drops the boards and nothing else.
    FileContents kept = first;
    kept.gpib.clear();
    const std::string saved = s_file.read();
    requireSaved(saved, kept, "the first save");
    requireSame(readAndSave(s_file.path(), true), kept, "a saved file reads differently");
    requireSaved(s_file.read(), kept, "the second save");
    return 0;
}
