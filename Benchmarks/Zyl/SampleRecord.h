// The record that every benchmark of this folder writes and reads. It holds no apostrophe and no double quote: the
// peers escape them in other ways.
#ifndef ORVANE_BENCHMARKS_ZYL_SAMPLE_RECORD_H
#define ORVANE_BENCHMARKS_ZYL_SAMPLE_RECORD_H

#include <string>

#include "PlayerRecord.h"

Example::PlayerRecord SampleRecord();
// Its XML form. Ends the process where that fails.
std::string SampleText(Quern::ZylXmlFormat format);

#endif
