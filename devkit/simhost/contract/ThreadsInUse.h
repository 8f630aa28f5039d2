// The threads of this process.
//
// Thread: any.
#pragma once

namespace simhost::contract {

long long ThreadsInUse();

// Until there are no more than so many again, or a moment has passed: a thread that was told to end may come to it late
// when the machine has much to do.
void WaitForThreadsToEnd(long long count);

}  // namespace simhost::contract
