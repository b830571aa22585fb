// A copy of some bytes that ends where readable memory ends: reading one byte behind it is a fault in every kind of
// build.
#ifndef ORVANE_TESTS_SUPPORT_GUARDED_TEXT_H
#define ORVANE_TESTS_SUPPORT_GUARDED_TEXT_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string_view>

class GuardedText {
public:
    explicit GuardedText(std::string_view text) : _size(text.size()) {
        const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        const size_t readable = (text.size() + page) / page * page;
        _mapped = readable + page;
        void* memory = mmap(nullptr, _mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) abort();
        _memory = static_cast<char*>(memory);
        if (mprotect(_memory + readable, page, PROT_NONE) != 0) abort();
        _text = _memory + readable - text.size();
        if (!text.empty()) memcpy(_text, text.data(), text.size());
    }
    ~GuardedText() { munmap(_memory, _mapped); }
    GuardedText(const GuardedText&) = delete;
    GuardedText& operator=(const GuardedText&) = delete;

    const char* data() const { return _text; }
    int size() const { return static_cast<int>(_size); }

private:
    size_t _size, _mapped;
    char* _memory;
    char* _text;
};

#endif
