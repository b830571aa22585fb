// Lines from a descriptor that is read only when it is ready.
#ifndef ORVANE_TOOLS_HOST_LINE_READER_H
#define ORVANE_TOOLS_HOST_LINE_READER_H

#include <string>

namespace OrvaneHost {

// Blocks nowhere, so that the main thread can wait for other things too. One thread; the descriptor is borrowed.
class LineReader {
public:
    explicit LineReader(int descriptor) : _descriptor(descriptor) {}

    // Reads once, 4 KiB at most; call when the descriptor is readable. An error ends the input.
    void Fill();
    // Takes the next whole line, or at the end what stands without a newline. False if there is none.
    bool Next(std::string& line);
    // True when nothing more can be read; lines may still be left.
    bool IsAtEnd() const { return _end; }

private:
    int _descriptor;
    bool _end = false;
    std::string _buffer;  // what was read and not taken yet
};

}  // namespace OrvaneHost

#endif
