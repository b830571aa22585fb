// The shared queue's entry in the process's table of run-time classes; its reader is Orvane/OperationQueue.h.
#ifndef ORVANE_SYSTEM_OPERATION_OPERATION_QUEUE_CLASS_H
#define ORVANE_SYSTEM_OPERATION_OPERATION_QUEUE_CLASS_H

namespace Quern {

// Registers the class "OrvaneOperationQueue" with the class method "addOperation:data:repeat:". Called once, while the
// library loads.
void RegisterOperationQueueClass();

}  // namespace Quern

#endif
