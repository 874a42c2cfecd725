/// @file
/// The version of the library that these headers belong to (https://semver.org/). It is written here only: the packages,
/// the SONAMEs and the DLLs' version resources are made from these three lines.
#ifndef KV_APPL_MAN_VERSION_H
#define KV_APPL_MAN_VERSION_H

#define KV_APPLMAN_VERSION_MAJOR 1 ///< another number: programs must be built anew
#define KV_APPLMAN_VERSION_MINOR 0 ///< more is offered, what was there stays
#define KV_APPLMAN_VERSION_PATCH 0 ///< faults were mended

/// The version as one number, for the preprocessor to compare: 1.2.3 is 10203.
#define KV_APPLMAN_VERSION                                                                                             \
    (KV_APPLMAN_VERSION_MAJOR * 10000 + KV_APPLMAN_VERSION_MINOR * 100 + KV_APPLMAN_VERSION_PATCH)

#endif
