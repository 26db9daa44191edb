// SPDX-License-Identifier: MIT
// The store loads a file, answers queries, takes new entries, saves and loads again.
// The input's first byte: bit 0 puts the version header before the rest; bit 1 also splits the rest
// into entries for setData().

#include "config/ConfigurationFile.h"
#include "fuzz/Judgement.h"
#include "tests/support/OracleReader.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <utility>
#include <vector>

using QvVisa::ConfigurationFile;

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

FileContents contentsOf(const ConfigurationFile& store, const FileContents& expected)
{
    FileContents contents{
        store.m_aliases, store.m_resources, {}, store.m_serialProperties, store.m_provider};
    for (const auto& [board, properties] : expected.gpib) {
        require(store.getGpibProperties(board, contents.gpib[board]), "a loaded store has boards");
    }
    return contents;
}

/// (resource, alias) in the order of getResource().
Entries entriesOf(const ConfigurationFile& store)
{
    Entries entries;
    for (const std::string& resource : store.m_resources) {
        entries.emplace_back(resource, "");
    }
    for (const auto& [alias, resource] : store.m_aliases) {
        entries.emplace_back(resource, alias);
    }
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
    const Entries entries = entriesOf(store);
    const std::vector<std::string> all = store.getAllResources();
    require(std::adjacent_find(all.begin(), all.end(), std::greater_equal<>()) == all.end(),
            "resources out of order or duplicate");
    // A sample, because getResource() and lookupAlias() take time proportional to the entries.
    for (std::size_t i = 0; i <= entries.size(); i += 1 + entries.size() / 16) {
        std::string alias = "not set";
        const std::string resource = store.getResource(i, alias);
        if (i == entries.size()) {
            require(resource.empty() && alias.empty(), "an entry past the end");
            break;
        }
        require(std::pair(resource, alias) == entries[i], "another entry than in the tables");
        require(std::binary_search(all.begin(), all.end(), resource), "a resource is missing");
        const auto found = store.m_aliases.find(store.lookupAlias(upperCase(resource)));
        require(alias.empty() || (found != store.m_aliases.end() &&
                                  upperCase(found->second) == upperCase(resource)),
                "the alias of a resource was not found");
        const auto upper = store.m_aliases.find(upperCase(alias));
        const std::string expected = upper != store.m_aliases.end() ? upper->second : alias;
        require(store.replaceAlias(alias) == (upper != store.m_aliases.end()) && alias == expected,
                "an alias was replaced wrongly");
    }
}

/// Each line is one entry, (resource, alias) before and after its first blank.
Entries splitIntoEntries(std::string_view bytes)
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
        if (beginsWithHeader(bytes) && hasOnlyShortLines(bytes)) {
            OracleReader oracle;
            oracle.read(bytes);
            m_expected = oracle.contents();
        } else if (beginsWithHeader(bytes)) {
            m_expected = readWithModernConfigurationFile(m_file.path());
        }
        m_store->load();
        requireSame(contentsOf(*m_store, m_expected), m_expected, "loaded something else");
        requireAnswers(*m_store);
    }

    void replaceSaveAndLoad(const Entries& entries, unsigned short provider)
    {
        m_store->setData(entries);
        m_store->setProvider(provider);
        FileContents set = m_expected;
        set.aliases.clear();
        set.resources.clear();
        set.provider = provider;
        for (const auto& [resource, alias] : entries) {
            if (alias.empty()) {
                set.resources.push_back(resource);
            } else {
                set.aliases[alias] = resource;
            }
        }
        requireSame(contentsOf(*m_store, set), set, "set something else");
        requireAnswers(*m_store);
        m_store->save();
        const std::string saved = m_file.read();
        requireSaved(saved, set, "saved something else");
        load(saved);
    }

    Entries entries() const { return entriesOf(*m_store); }

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
    const std::string header = (choice & 1U) != 0 ? ":QvVisaConfigurationFileVersion01\n" : "";
    s_store.load(header + std::string(bytes));
    s_store.replaceSaveAndLoad(s_store.entries(), static_cast<unsigned short>(choice * 257U));
    if ((choice & 2U) != 0) {
        s_store.replaceSaveAndLoad(splitIntoEntries(bytes), static_cast<unsigned short>(size));
    }
    return 0;
}
