// SPDX-License-Identifier: MIT
// The store: loads a file, answers for it, takes new entries, saves and loads again.
// The input's first byte chooses: bit 0, the version header is put in front of the rest; bit 1,
// the rest is also cut into entries.

#include "config/ConfigurationFile.h"
#include "fuzz/Judgement.h"
#include "tests/config/OracleReader.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <utility>
#include <vector>

using QvVisa::ConfigurationFile;

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

/// What a reader must make of a file.
FileContents expectedContents(std::string_view bytes, const std::string& path)
{
    if (!hasOnlyShortLines(bytes)) {
        return readWithModernConfigurationFile(path);
    }
    OracleReader oracle;
    oracle.read(bytes);
    return oracle.contents();
}

FileContents contentsOf(const ConfigurationFile& store, const FileContents& expected)
{
    FileContents contents;
    contents.aliases = store.m_aliases;
    contents.resources = store.m_resources;
    contents.serial = store.m_serialProperties;
    contents.provider = store.m_provider;
    for (const auto& [board, properties] : expected.gpib) {
        require(store.getGpibProperties(board, contents.gpib[board]),
                "no boards in a loaded store");
    }
    return contents;
}

Entries walk(const ConfigurationFile& store)
{
    const std::size_t count = store.m_resources.size() + store.m_aliases.size();
    Entries entries;
    for (std::size_t i = 0; i < count; ++i) {
        std::string alias = "not set";
        std::string resource = store.getResource(i, alias);
        entries.emplace_back(std::move(resource), std::move(alias));
    }
    std::string alias = "not set";
    require(store.getResource(count, alias).empty() && alias.empty(), "an entry past the end");
    return entries;
}

std::string upperCase(std::string text)
{
    for (char& c : text) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return text;
}

void requireAnswers(const ConfigurationFile& store)
{
    const Entries entries = walk(store);
    auto entry = entries.begin();
    for (const std::string& resource : store.m_resources) {
        require(*entry++ == std::pair(resource, std::string()), "another resource in the walk");
    }
    for (const auto& [alias, resource] : store.m_aliases) {
        require(*entry++ == std::pair(resource, alias), "another alias in the walk");
    }
    // Backwards, where no position can be remembered.
    for (std::size_t i = entries.size(); i-- > 0;) {
        std::string alias;
        require(store.getResource(i, alias) == entries[i].first && alias == entries[i].second,
                "another entry on the way back");
    }

    std::vector<std::string> all = store.getAllResources();
    for (const auto& [resource, alias] : entries) {
        require(std::binary_search(all.begin(), all.end(), resource), "a resource is missing");
    }
    require(std::adjacent_find(all.begin(), all.end(), std::greater_equal<>()) == all.end(),
            "resources out of order or twice");

    constexpr std::ptrdiff_t asked = 16;
    const auto most = std::min<std::ptrdiff_t>(asked, static_cast<std::ptrdiff_t>(entries.size()));
    for (auto last = entries.end() - most; last != entries.end(); ++last) {
        const std::string found = store.lookupAlias(upperCase(last->first));
        const auto alias = store.m_aliases.find(found);
        require(last->second.empty() || (alias != store.m_aliases.end() &&
                                         upperCase(alias->second) == upperCase(last->first)),
                "the alias of a resource was not found");
        std::string name = last->second;
        const auto upper = store.m_aliases.find(upperCase(name));
        require(store.replaceAlias(name) == (upper != store.m_aliases.end()),
                "an alias was or was not known");
        require(name == (upper != store.m_aliases.end() ? upper->second : last->second),
                "an alias became another resource");
    }
}

/// Pieces of the bytes as (resource, alias); no line feeds in them, else anything.
Entries cutIntoEntries(std::string_view bytes)
{
    Entries entries;
    while (!bytes.empty()) {
        const std::string_view line = bytes.substr(0, bytes.find('\n'));
        const std::size_t middle = std::min(line.find(' '), line.size());
        entries.emplace_back(line.substr(0, middle), line.substr(middle));
        bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
    }
    return entries;
}

FileContents withEntries(FileContents contents, const Entries& entries)
{
    contents.aliases.clear();
    contents.resources.clear();
    for (const auto& [resource, alias] : entries) {
        if (alias.empty()) {
            contents.resources.push_back(resource);
        } else {
            contents.aliases[alias] = resource;
        }
    }
    return contents;
}

class FuzzedStore
{
public:
    FuzzedStore()
    {
        m_file.write(":QvVisaConfigurationFileVersion01\n");
        ::setenv("QVVISACONFFILE", m_file.path().c_str(), 1);
        m_store = ConfigurationFile::getInstance();
    }

    void load(const std::string& bytes)
    {
        m_file.write(bytes);
        if (beginsWithHeader(bytes)) {
            m_expected = expectedContents(bytes, m_file.path());
        }
        m_store->load();
        requireSame(contentsOf(*m_store, m_expected), m_expected, "loaded something else");
        requireAnswers(*m_store);
    }

    void replaceSaveAndLoad(const Entries& entries, unsigned short provider)
    {
        m_store->setData(entries);
        m_store->setProvider(provider);
        FileContents set = withEntries(m_expected, entries);
        set.provider = provider;
        requireSame(contentsOf(*m_store, set), set, "took something else");
        requireAnswers(*m_store);
        m_store->save();
        const std::string saved = m_file.read();
        requireSaved(saved, set, "saved something else");
        load(saved);
    }

    Entries entries() const { return walk(*m_store); }

private:
    FuzzedFile m_file;
    ConfigurationFile* m_store = nullptr;
    FileContents m_expected;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzedStore s_store;
    if (size == 0) {
        return 0;
    }
    const unsigned choice = data[0];
    const std::string_view bytes = asText(data, size).substr(1);
    std::string file = (choice & 1U) != 0 ? ":QvVisaConfigurationFileVersion01\n" : "";
    s_store.load(file.append(bytes));
    s_store.replaceSaveAndLoad(s_store.entries(), static_cast<unsigned short>(choice * 257U));
    if ((choice & 2U) != 0) {
        s_store.replaceSaveAndLoad(cutIntoEntries(bytes), static_cast<unsigned short>(size));
    }
    return 0;
}
