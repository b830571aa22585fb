// The name of the calling thread.
#ifndef ORVANE_SYSTEM_THREAD_THREAD_NAME_H
#define ORVANE_SYSTEM_THREAD_THREAD_NAME_H

namespace Quern {

// Names the calling thread. The kernel, and with it a debugger, holds the first 15 bytes; the whole name is kept beside
// it. A null name does nothing.
void set_thread_name(const char* name);

// The whole name given by set_thread_name, "" if the calling thread has none. Valid until the thread is named anew or
// ends.
const char* get_thread_name();

}  // namespace Quern

#endif
