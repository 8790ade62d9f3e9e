#include "support/audio_thread_guard.h"

#include "platform/audio_thread_mark.h"

#ifndef TONVEX_GUARD_AUDIO

namespace tonvex::test {

Audio_Thread_Guard::Audio_Thread_Guard() = default;
bool Audio_Thread_Guard::Is_Built() noexcept {
    return false;
}
int Audio_Thread_Guard::Violations() const noexcept {
    return 0;
}
std::string Audio_Thread_Guard::First_Violation() const {
    return {};
}

} // namespace tonvex::test

#else

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace {

std::atomic<int> violations{0};
std::atomic<const char*> firstCall{nullptr};
std::array<void*, 24> firstStack{};
std::atomic<int> firstDepth{0};

void Count(const char* call) noexcept {
    if (!tonvex::Audio_Thread_Mark::Inside())
        return;
    if (violations.fetch_add(1) == 0) {
        firstCall.store(call);
        firstDepth.store(backtrace(firstStack.data(), static_cast<int>(firstStack.size())));
    }
}

/// Counts the call and hands it to the C library's own definition, which this file stands before.
template <auto Function, typename... Arguments>
auto Guarded(const char* name, Arguments... arguments) {
    Count(name);
    static std::atomic<void*> known{nullptr};
    void* found = known.load(std::memory_order_relaxed);
    if (found == nullptr) {
        found = dlsym(RTLD_NEXT, name);
        known.store(found, std::memory_order_relaxed);
    }
    return reinterpret_cast<decltype(Function)>(found)(arguments...);
}

} // namespace

// The names below are the C library's own. NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

void* __libc_malloc(std::size_t size) noexcept;
void __libc_free(void* block) noexcept;
void* __libc_calloc(std::size_t count, std::size_t size) noexcept;
void* __libc_realloc(void* block, std::size_t size) noexcept;
void* __libc_memalign(std::size_t alignment, std::size_t size) noexcept;

void* malloc(std::size_t size) noexcept {
    Count("malloc");
    return __libc_malloc(size);
}

void free(void* block) noexcept {
    if (block != nullptr)
        Count("free");
    __libc_free(block);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    Count("calloc");
    return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) noexcept {
    Count("realloc");
    return __libc_realloc(block, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    Count("aligned_alloc");
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    Count("posix_memalign");
    *block = __libc_memalign(alignment, size);
    return *block == nullptr ? 12 : 0;
}

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    return Guarded<&pthread_mutex_lock>("pthread_mutex_lock", mutex);
}

int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
    return Guarded<&pthread_mutex_trylock>("pthread_mutex_trylock", mutex);
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    return Guarded<&pthread_cond_wait>("pthread_cond_wait", condition, mutex);
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* request, timespec* remain) {
    return Guarded<&clock_nanosleep>("clock_nanosleep", clock, flags, request, remain);
}

int nanosleep(const timespec* request, timespec* remain) {
    return Guarded<&nanosleep>("nanosleep", request, remain);
}

FILE* fopen(const char* path, const char* mode) {
    return Guarded<&fopen>("fopen", path, mode);
}

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return Guarded<&open>("open", path, flags, mode);
}

ssize_t read(int file, void* bytes, std::size_t count) {
    return Guarded<&read>("read", file, bytes, count);
}

ssize_t write(int file, const void* bytes, std::size_t count) {
    return Guarded<&write>("write", file, bytes, count);
}

std::size_t fwrite(const void* bytes, std::size_t size, std::size_t count, FILE* file) {
    return Guarded<&fwrite>("fwrite", bytes, size, count, file);
}

int fputs(const char* text, FILE* file) {
    return Guarded<&fputs>("fputs", text, file);
}

int vfprintf(FILE* file, const char* format, va_list arguments) {
    return Guarded<&vfprintf>("vfprintf", file, format, arguments);
}

int __vfprintf_chk(FILE* file, int, const char* format, va_list arguments) {
    return vfprintf(file, format, arguments);
}

int __fprintf_chk(FILE* file, int, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int written = vfprintf(file, format, arguments);
    va_end(arguments);
    return written;
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace tonvex::test {

Audio_Thread_Guard::Audio_Thread_Guard() {
    std::array<void*, 2> primed{};
    backtrace(primed.data(), 2); // the first call loads a library
    firstCall.store(nullptr);
    firstDepth.store(0);
    violations.store(0);
}

bool Audio_Thread_Guard::Is_Built() noexcept {
    return true;
}

int Audio_Thread_Guard::Violations() const noexcept {
    return violations.load();
}

std::string Audio_Thread_Guard::First_Violation() const {
    const char* const call = firstCall.load();
    if (call == nullptr)
        return {};
    std::string text = call;
    char** const names = backtrace_symbols(firstStack.data(), firstDepth.load());
    for (int i = 0; names != nullptr && i < firstDepth.load(); ++i)
        text += std::string("\n  ") + names[i];
    std::free(names);
    return text;
}

} // namespace tonvex::test

#endif
