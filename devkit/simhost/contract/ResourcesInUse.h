// What this process has in use.
//
// Thread: any.
#pragma once

namespace simhost::contract {

struct ResourcesInUse {
    long long blocks = 0;   // of memory, in all heaps
    long long bytes = 0;    // of these blocks
    long long pages = 0;    // of memory that is this process's alone, heaps among it
    long long handles = 0;  // of the kernel
    long long objects = 0;  // of windows and drawing; Wine counts none

    static ResourcesInUse Now();
};

ResourcesInUse operator-(const ResourcesInUse& after, const ResourcesInUse& before);
// The lesser one of each kind.
ResourcesInUse Least(const ResourcesInUse& a, const ResourcesInUse& b);

}  // namespace simhost::contract
