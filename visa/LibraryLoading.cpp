// SPDX-License-Identifier: MIT
#include "visa/LibraryLoading.h"

#include <cstddef>

#include <dlfcn.h>
#ifdef __GLIBC__
#include <cxxabi.h>
#include <link.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace visa {

namespace {

/// glibc does not release its loader lock when an exception passes through dlopen(): from then on
/// every dlopen() of another thread would hang, and Qt loads plugins at any time. The lock is a
/// recursive mutex in the loader's state, which has no public name; it is the one that this thread
/// holds.
void releaseLoaderLock()
{
#ifdef __GLIBC__
    void* const state = ::dlsym(RTLD_DEFAULT, "_rtld_global");
    Dl_info info = {};
    void* entry = nullptr;
    if (state == nullptr || ::dladdr1(state, &info, &entry, RTLD_DL_SYMENT) == 0 ||
        entry == nullptr) {
        return;
    }
    const std::size_t size = static_cast<const ElfW(Sym)*>(entry)->st_size;
    const auto self = static_cast<int>(::syscall(SYS_gettid));
    for (std::size_t at = 0; at + sizeof(pthread_mutex_t) <= size; at += alignof(pthread_mutex_t)) {
        auto* const mutex = reinterpret_cast<pthread_mutex_t*>(static_cast<char*>(state) + at);
        if (mutex->__data.__kind == PTHREAD_MUTEX_RECURSIVE_NP && mutex->__data.__lock != 0 &&
            mutex->__data.__owner == self && mutex->__data.__count == 1) {
            ::pthread_mutex_unlock(mutex);
        }
    }
#endif
}

} // namespace

// As in withoutExceptions(), the reference to glibc's object is null.
__attribute__((no_sanitize("null"))) LoadedLibrary loadLibrary(const char* path)
{
    // dlopen() is declared not to throw, so an exception would end the program if it were called by
    // its name; through this pointer the compiler does not know it.
    void* (*volatile const open)(const char*, int) = ::dlopen;
    try {
        return {open(path, RTLD_NOW | RTLD_LOCAL), false};
    }
#ifdef __GLIBC__
    catch (abi::__forced_unwind&) {
        throw;
    }
#endif
    catch (...) {
        releaseLoaderLock();
        return {nullptr, true};
    }
}

} // namespace visa
