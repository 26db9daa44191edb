// SPDX-License-Identifier: MIT
#include "visa/LibraryCandidate.h"

#include "visa/LoaderCache.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#ifdef __APPLE__
#include <mach-o/dyld.h>
#else
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>
#endif

namespace visa {

namespace {

using Origin = CandidateFile::Origin;

#ifdef __GLIBC__
/// Real ones have less than 1 MB.
constexpr std::size_t s_mostCache = std::size_t{16} << 20U;
#endif

std::string programPath()
{
    std::string path(4096, '\0');
#ifdef __APPLE__
    auto size = static_cast<std::uint32_t>(path.size());
    path.resize(::_NSGetExecutablePath(path.data(), &size) == 0 ? path.find('\0') : 0);
#else
    const ssize_t size = ::readlink("/proc/self/exe", path.data(), path.size());
    path.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
#endif
    return path;
}

/// The loader's own list of folders, which begins with those of LD_LIBRARY_PATH; what else is in it
/// depends on the system and on the program.
std::vector<std::string> loadersFolders()
{
    std::vector<std::string> folders;
#ifdef __GLIBC__
    void* const program = ::dlopen(nullptr, RTLD_NOW);
    Dl_serinfo wanted = {};
    if (program != nullptr && ::dlinfo(program, RTLD_DI_SERINFOSIZE, &wanted) == 0) {
        std::vector<std::max_align_t> memory(wanted.dls_size / sizeof(std::max_align_t) + 1);
        auto* const info = reinterpret_cast<Dl_serinfo*>(memory.data());
        *info = wanted;
        if (::dlinfo(program, RTLD_DI_SERINFO, info) == 0) {
            const Dl_serpath* const paths = info->dls_serpath;
            for (unsigned int index = 0; index < info->dls_cnt; ++index) {
                folders.emplace_back(paths[index].dls_name);
            }
        }
    }
    if (program != nullptr) {
        ::dlclose(program);
    }
#endif
    if (folders.empty()) {
        folders = {"/usr/local/lib", "/usr/lib", "/lib"};
    }
    return folders;
}

void replaceAll(std::string& text, std::string_view wanted, const std::string& replacement)
{
    for (std::size_t at = text.find(wanted); at != std::string::npos;
         at = text.find(wanted, at + replacement.size())) {
        text.replace(at, wanted.size(), replacement);
    }
}

std::vector<std::string> foldersOf(std::string_view libraryPath)
{
    std::vector<std::string> folders;
    while (!libraryPath.empty()) {
        const std::size_t end = std::min(libraryPath.find_first_of(":;"), libraryPath.size());
        // An empty one is the working folder.
        folders.emplace_back(end == 0 ? "." : libraryPath.substr(0, end));
        libraryPath.remove_prefix(std::min(end + 1, libraryPath.size()));
    }
    return folders;
}

/// Collects files that exist, each once.
class Files
{
public:
    void add(std::string_view folder, const std::string& name, Origin origin)
    {
        add(std::string(folder).append("/").append(name), origin);
    }

    void add(const std::string& path, Origin origin)
    {
        CandidateFile file{path, origin, ExecutableHeader::read(path)};
        if (file.header.kind == ExecutableHeader::Kind::Missing || !isNew(path)) {
            return;
        }
        m_files.push_back(std::move(file));
    }

    std::vector<CandidateFile> take() { return std::move(m_files); }

private:
    bool isNew(const std::string& path)
    {
        struct stat status = {};
        if (::stat(path.c_str(), &status) != 0) {
            return true;
        }
        const std::pair<dev_t, ino_t> identity{status.st_dev, status.st_ino};
        if (std::find(m_identities.begin(), m_identities.end(), identity) != m_identities.end()) {
            return false;
        }
        m_identities.push_back(identity);
        return true;
    }

    std::vector<CandidateFile> m_files;
    std::vector<std::pair<dev_t, ino_t>> m_identities;
};

} // namespace

LibrarySearch LibrarySearch::ofThisProgram()
{
    LibrarySearch search;
#ifdef __APPLE__
    const char* const variable = std::getenv("DYLD_LIBRARY_PATH"); // NOLINT(concurrency-mt-unsafe)
#else
    const char* const variable = std::getenv("LD_LIBRARY_PATH"); // NOLINT(concurrency-mt-unsafe)
    search.cache = readFileBeginning("/etc/ld.so.cache", s_mostCache).value_or("");
#endif
    search.libraryPath = variable != nullptr ? variable : "";
    search.systemFolders = loadersFolders();
    const std::string program = programPath();
    search.programFolder = program.substr(0, program.rfind('/'));
    return search;
}

std::string expandedCandidate(const std::string& name, const LibrarySearch& search)
{
    std::string path = name;
    for (const std::string_view token : {"${ORIGIN}", "$ORIGIN", "@executable_path"}) {
        replaceAll(path, token, search.programFolder);
    }
    return path;
}

LibraryCandidate LibraryCandidate::find(const std::string& name, const LibrarySearch& search)
{
    Files files;
    if (name.find('/') != std::string::npos) {
        files.add(expandedCandidate(name, search), Origin::Path);
        return {name, files.take()};
    }
    for (const std::string& folder : foldersOf(search.libraryPath)) {
        files.add(expandedCandidate(folder, search), name, Origin::LibraryPath);
    }
    for (const std::string& path : pathsInLoaderCache(search.cache, name)) {
        files.add(path, Origin::Cache);
    }
    for (const std::string& folder : search.systemFolders) {
        files.add(folder, name, Origin::SystemFolder);
    }
    return {name, files.take()};
}

} // namespace visa
