#include "Log/TextEvents.h"

#include <utility>

namespace OrvaneLog {

TextEvents::Entries::Entries(Printer& printerToUse, const FilterOptions& options, std::string sourceModule,
                             bool plainFile)
    : printer(printerToUse),
      filter(options, std::move(sourceModule)),
      splitter(
          [this](const Entry& entry) {
              if (filter.Accepts(entry)) printer.Print(entry);
          },
          plainFile) {}

TextEvents::TextEvents(Printer& printer, const FilterOptions& filter, std::string sourceModule, bool plainFile)
    : _entries(std::make_unique<Entries>(printer, filter, std::move(sourceModule), plainFile)) {}

void TextEvents::OnText(std::string_view piece) {
    if (piece.empty()) return;
    _last = piece.back();
    if (_entries)
        _entries->splitter.Feed(piece);
    else
        _output->Write(piece);
}

void TextEvents::End() {
    if (_entries)
        _entries->splitter.End();
    else if (_last != '\n')
        _output->Write("\n");
    _last = '\n';
}

// A line without its newline may be one that is still being written: it waits.
void TextEvents::Pause() {
    if (_last == '\n') End();
}

}  // namespace OrvaneLog
