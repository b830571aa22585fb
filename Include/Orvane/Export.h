/// \file Export.h
/// Marks what the library exports.
#ifndef ORVANE_EXPORT_H
#define ORVANE_EXPORT_H

#if defined(__GNUC__)
#define ORVANE_EXPORT __attribute__((visibility("default")))
#else
#define ORVANE_EXPORT
#endif

#endif
