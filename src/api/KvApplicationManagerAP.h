/// @file
/// The application manager access point: brings real-time applications onto real-time targets and controls them there.
///
/// Conventions that hold for every function (KvApplMan_freeApplInfoList has neither a result nor a pool):
///
/// - Result: 0 on success. A negative number is a failure; what it stands for is listed with each function. A result of
///   the host interface library that is passed through can be any number, positive ones too, so test for "not 0".
/// - Messages: the first argument is an error-list pool. Every failure adds at least one message there, innermost first,
///   unless the function says otherwise; the target's own messages arrive there too, also with a success (warnings). Some
///   functions empty the whole pool, entries of the host's own included, when they tolerate what the target cannot
///   answer; they say so.
/// - Handles: a device handle names one target. An access-restriction handle yields the access ID that goes with every
///   request. Both belong to the host interface library. A handle that is null or of no use gives code 1024 and -100, or
///   code 0x12500044 and -100 when the device is gone.
/// - Connection: the first call for a device connects its command channel (up to 5 seconds); later calls share it. A
///   device whose channel cannot be set up gives -180.
/// - Blocking: a call to the target waits for its reply up to 15 seconds; then, like any call that fails, it gives code
///   0x1250000a and -185, unless the function says otherwise. Commands that the target carries out by itself are waited
///   for as long as the target's command timeout allows.
/// - Threads: every function may be called from any thread, and for several devices or for the same one at a time. Calls
///   that use the same pool or the same group handle must not overlap. A thread is not cancelled inside a call.
/// - Texts: zero-terminated UTF-8. Host paths may use the host's separators.
/// - Null: a pointer must not be null unless the function says so; a null one gives code 1024 and -100.
/// - C: the same functions, C99. A pool is a pointer there (KvCErrorListPool*), which must not be null.
/// - Sizes: `size` of an item of any length is in/out. When it is too small, the result is -200 and it holds the size
///   needed, so that a call with size 0 is a size query.
/// - Nothing is thrown. When memory runs out a function gives code 1024 and -100 unless it says otherwise.
/// - Unloading: remove the devices before the library is unloaded, and only while no call for them is under way: their
///   command channels live in this library.
#ifndef KV_APPLICATION_MANAGER_AP_H
#define KV_APPLICATION_MANAGER_AP_H

#include <stdint.h>

#include "KvApplManProgress.h"
#include "KvApplManVersion.h"
#include "KvExport.h"

/// A group of application processes, one per slot of a list of devices. Made by KvApplMan_createApplGroupHandle_2, owned
/// by the host, and freed as a whole by KvApplMan_deleteApplGroupHandle. A host only reads it.
typedef struct KvSApplGroupHandle {
    uint32_t targetGroupId1;   ///< first word of the identity that the target gave the group; 0 without groups
    uint32_t targetGroupId2;   ///< second word
    uint32_t reserved;         ///< 0
    uint32_t applCount;        ///< number of slots, 1 to 128
    uint32_t lastApplNo;       ///< number of the last slot that registration has dealt with; 0 at first
    uint32_t* cnSerialNumbers; ///< per slot the CN serial number of its device; 0 for an empty slot
    uint32_t* ipAddresses;     ///< per slot the IPv4 address of its device in network order; 0 for an empty slot
} KvSApplGroupHandle;

/// One element of a list of applications, made by KvApplMan_getApplInfoList and freed by KvApplMan_freeApplInfoList.
typedef struct KvTApplicationInfo {
    uint32_t applId; ///< application ID
    char* infoText;  ///< information text (item 22), zero-terminated
} KvTApplicationInfo;

/// An additional file of an application, as the target has registered it. The host makes the array of them. What the texts
/// and the word mean is defined by the target.
typedef struct TApplManAddFileInfo {
    char entryText1[1024];        ///< first text, cut to 1022 bytes
    char entryText2[256];         ///< second text, cut to 254 bytes
    char entryText3[1024];        ///< third text, cut to 1022 bytes
    uint32_t entryWord;           ///< the word
    unsigned char reserved[1024]; ///< zeros
} TApplManAddFileInfo;

#ifdef __cplusplus
extern "C" {
#endif

/// Creates the handle of a group of application processes. The target of the first present device opens the group;
/// then every present device is asked for its CN serial number. A target that cannot answer for the serial number has
/// that of the device list, and the pool is then emptied.
/// @param pool receives messages
/// @param devHandles one device handle per slot; null marks an empty slot; at least one must be given
/// @param accessResHandles one access-restriction handle per slot; not looked at for an empty slot
/// @param devCount number of slots, 1 to 128
/// @param groupHandle receives the handle, which the host frees with KvApplMan_deleteApplGroupHandle; null after a
///        failure, but untouched when an argument is missing
/// @return 0; -100: an argument is missing, there is no device, an access-restriction handle is of no use (code 1024),
///         or there are more than 128 slots (0x1250004d); -180: no command channel; -200: the target has no groups and
///         there is more than one slot; -840: the target refused or did not answer, a serial number or an address could
///         not be read, or memory ran out (0x12500045, 0x12500048)
KVAPPLMAN_API int32_t KvApplMan_createApplGroupHandle_2(KvCErrorListPool KV_REF pool, void* const* devHandles,
                                                        void* const* accessResHandles, uint32_t devCount,
                                                        KvSApplGroupHandle** groupHandle) KV_NOEXCEPT;

/// Frees a group handle. Nothing is sent; the processes of the group stay as they are. Does not block.
/// @param pool receives messages
/// @param groupHandle a handle of KvApplMan_createApplGroupHandle_2 that was not deleted yet
/// @return 0; -100: null
KVAPPLMAN_API int32_t KvApplMan_deleteApplGroupHandle(KvCErrorListPool KV_REF pool,
                                                      KvSApplGroupHandle* groupHandle) KV_NOEXCEPT;

/// Registers one application process of a group with the target of its slot. Numbers are registered in ascending order;
/// empty slots are left out. The host's time is sent to the target first, whether it takes it or not, and the group's
/// serial numbers and addresses to the new process afterwards. The pool is emptied when the target does not know those,
/// which is tolerated, and when its own serial number is taken from the device list, as for the group.
/// @param pool receives messages
/// @param devHandle the device of the slot
/// @param accessResHandle yields the access ID
/// @param groupHandle the group; its lastApplNo is advanced
/// @param applNo number of the slot, 1 to applCount
/// @param applId receives the application ID by which every later call names the process; set to 0 first; it holds the
///        new ID also when only the last step, writing the group's data to the process, failed
/// @return 0; -100: an argument is missing, a handle is of no use, or the target gave no application ID; -110: the number
///         is out of turn (0x12500049), the device is not that of the slot (0x1250004b) or its serial number cannot be
///         read (0x1250004a), or the target refused or did not answer; -176: the target refused the group's data; -180:
///         no command channel; -185: the group's data could not be sent, or the target does not offer registration
///         (0x12500034); -245: no access-restriction handle for the process, or it could not be deleted
KVAPPLMAN_API int32_t KvApplMan_registerAppl_2(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                               KvSApplGroupHandle* groupHandle, uint32_t applNo,
                                               uint32_t* applId) KV_NOEXCEPT;

/// Writes one parameter of an application process, or of the target's application manager. For a process, a parameter
/// that the target does not know is tolerated where the table has a +; the pool is then emptied.
///
/// | paramId | value points to | valueSize |
/// |---|---|---|
/// | 1001, 3075 | texts (array of pointers) | number of texts |
/// | 1002, 1003, 1007, 1011+ | a text | not looked at, but not negative |
/// | 1004 | a 64-bit integer | 8 |
/// | 1005+ | 32-bit words | bytes; a remainder of 1 to 3 is not sent |
/// | 1008+, 1009+, 1010+, 3072 | a 32-bit word | 4 |
/// | 3073, 3074 | a double | 8 |
///
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process; 0 = the application manager
/// @param paramId the parameter
/// @param value the value; needs no alignment; not null, whatever valueSize says
/// @param valueSize see the table
/// @return 0; -100: value or a text of a list is null, or a handle is of no use; -176: the target refused; -180: no
///         command channel; -185: the call failed; -200: valueSize does not fit; -205: unknown paramId
KVAPPLMAN_API int32_t KvApplMan_setApplParameter(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                                 uint32_t applId, uint32_t paramId, const void* value,
                                                 int32_t valueSize) KV_NOEXCEPT;

/// Brings all processes of a group onto their targets: transfers and loads each binary, then, unless the targets load
/// completely at once, initialises and applies them. Each process must have been registered. A failure stops the
/// sequence; what was done before stays. Blocks for the whole time.
/// @param pool receives messages; emptied when a target cannot answer for, or does not know, what may be missing
/// @param devHandles one device handle per slot; null marks an empty slot
/// @param accessResHandles one access-restriction handle per slot
/// @param applIds one application ID per slot
/// @param applPathsUtf8 one host path per slot; for an empty slot it may be null
/// @param downloadOption handed to the targets unchanged
/// @param applCountAndLoadOptions bits 0 to 23: number of slots; bits 24 to 31: load options, 0 (others are refused)
/// @param progressCallback called on the calling thread; may be null. It may call functions of this library, with
///        another pool
/// @param userData handed to progressCallback; may be null
/// @param targetPathsUtf8 names under which the processes are announced to the targets; the list and each text may be
///        null or empty: then the host path is announced
/// @return 0; -100: an argument is missing, there is no device, or a handle is of no use; -120, -130, -140: a process was
///         not initialised, loaded or applied, in time or at all; -130 also for a number of slots that is not the
///         group's (0x1250004f) and for targets that do not go together (0x12500055); -175: an item could not be read;
///         -176: a target refused a parameter; -180: no command channel; -185: a call failed; -190, -191, -195: the
///         transfer failed; -204: an item of the wrong type; -250: a binary was not found
KVAPPLMAN_API int32_t KvApplMan_downloadApplUtf8(KvCErrorListPool KV_REF pool, void* const* devHandles,
                                                 void* const* accessResHandles, const uint32_t* applIds,
                                                 const char* const* applPathsUtf8, uint32_t downloadOption,
                                                 uint32_t applCountAndLoadOptions,
                                                 KvTApplManProgressCallback progressCallback, void* userData,
                                                 const char* const* targetPathsUtf8) KV_NOEXCEPT;

/// Starts a loaded application process and waits until the target has done it.
/// @param pool receives messages; emptied when the target cannot tell its command timeout, which is then 120 seconds
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process; any value is sent, the target judges it
/// @return 0; -100: a handle is of no use; -150: refused, failed or not in time; -175, -204: the target's command timeout
///         could not be read; -180: no command channel; -185: a call failed
KVAPPLMAN_API int32_t KvApplMan_startAppl(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                          uint32_t applId) KV_NOEXCEPT;

/// Stops an application process and waits until the target has done it. Messages of a refusal or a failed call are
/// reported under "KvApplMan_stopTerminateAppl".
/// @param pool receives messages; emptied when the target cannot tell its command timeout, which is then 120 seconds
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process; any value is sent, the target judges it
/// @return 0; -160: refused, failed or not in time; -100, -175, -180, -185, -204: as for KvApplMan_startAppl
KVAPPLMAN_API int32_t KvApplMan_stopAppl(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                         uint32_t applId) KV_NOEXCEPT;

/// Terminates an application process and waits until the target has done it. Messages of a refusal or a failed call are
/// reported under "KvApplMan_stopTerminateAppl".
/// @param pool receives messages; emptied when the target cannot tell its command timeout, which is then 120 seconds
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process; any value is sent, the target judges it
/// @return 0; -161: refused, failed or not in time; -100, -175, -180, -185, -204: as for KvApplMan_startAppl
KVAPPLMAN_API int32_t KvApplMan_terminateAppl(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                              uint32_t applId) KV_NOEXCEPT;

/// Unloads an application process and waits until the target has done it. A target that, while it is asked whether it
/// is done, no longer knows the process (its code 0x14a00803) has done it.
/// @param pool receives messages; emptied when the target cannot tell its command timeout, which is then 120 seconds
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process; any value is sent, the target judges it
/// @return 0; -170: refused, failed or not in time; -100, -175, -180, -185, -204: as for KvApplMan_startAppl
KVAPPLMAN_API int32_t KvApplMan_unloadAppl(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                           uint32_t applId) KV_NOEXCEPT;

/// Reads one information item of an application process, or of the target's application manager. Where the target cannot
/// answer (its code 0x14a00804 stands in the pool) and the item has a default, the default is delivered and the pool is
/// emptied.
///
/// | infoId | delivered | size | default for a process / the manager |
/// |---|---|---|---|
/// | 0 | application state, 32 bits (a state that is not known: -210, and the result is still 0) | 4 | - |
/// | 2, 3 | file name and directory of the binary, text | any | - |
/// | 4, 5 | times of the binary and of its download, 64-bit seconds since 1970 | 8 | - |
/// | 6, 7 | time of the download and of the binary as text "YYYY-MM-DD hh:mm:ss" | any | - |
/// | 8 | 64-bit number | 8 | 0 / - |
/// | 9 | 32-bit number | 4 | 1 / - |
/// | 10 | number of processes in the group, 32 bits | 4 | 1 / - |
/// | 11 | 32-bit words | any | one word, 1 / - |
/// | 12, 13, 14, 17, 19, 20 | text | any | - / empty |
/// | 15 | CN serial numbers of the group, 32-bit words | any | the device's, once per process / - |
/// | 16 | IPv4 addresses of the group, text "a.b.c.d;...", empty where there is none | any | the device's, likewise / - |
/// | 18 | text | any | - / item 13 |
/// | 21 | 32-bit number | 4 | - / 0 |
/// | 22, 128 | text; 22 is the application's information text | any | - |
/// | 1002, 1003, 1007 | parameter, text | any | - |
/// | 1004 | parameter, 64-bit integer | 8 | - |
/// | 1005 | parameter, 32-bit words | any | one word, 1 / - |
/// | 1008, 1009 | parameter, 32 bits | 4 | 0 / - |
/// | 1011 | parameter, text | any | empty / - |
/// | 1200 | 64-bit words | any | - |
/// | 2049 | 32-bit number | 4 | - |
/// | 2050 | initialisation calls, 32 bits | 4 | 0 / - |
/// | 2051 | CN serial number, 32 bits | 4 | - / the device's when known |
/// | 2052, 2053 | 64-bit numbers | 8 | - |
/// | 2054 | text | any | - |
/// | 2055 | command timeout in seconds, 32 bits | 4 | 0 / 120 |
/// | 3073, 3074 | parameter, double | 8 | - |
///
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process; 0 = the application manager
/// @param infoId the item
/// @param buffer receives the value; set to zeros first; may be null when size is 0
/// @param size in: bytes of buffer, which must be exactly the number above where there is one. Out: for texts unchanged
///        on success and the bytes needed (with the terminating zero) on -200; for words, and for item 16, the bytes of
///        the value on success and on -200
/// @return 0; -100: size is null, buffer is null with a size above 0, a handle is of no use, or memory ran out for item 16
///         (0x12500051); -175: the target did not answer; -180: no command channel; -185: the call failed; -200: size is
///         not that of the item, negative or too small; -204: the target answered with another type; -205: unknown infoId
KVAPPLMAN_API int32_t KvApplMan_getApplInfo(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                            uint32_t applId, uint32_t infoId, void* buffer, int32_t* size) KV_NOEXCEPT;

/// Pauses a running application process and waits until the target has done it.
/// @param pool receives messages; emptied when the target cannot tell its command timeout, which is then 120 seconds
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process; any value is sent, the target judges it
/// @return 0; -165: refused, failed or not in time (0x12500038 comes last); -100, -175, -180, -185, -204: as for
///         KvApplMan_startAppl
KVAPPLMAN_API int32_t KvApplMan_pauseAppl(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                          uint32_t applId) KV_NOEXCEPT;

/// Lets a paused application process run one step and waits until the target has done it.
/// @param pool receives messages; emptied when the target cannot tell its command timeout, which is then 120 seconds
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process; any value is sent, the target judges it
/// @return 0; -166: refused, failed or not in time (0x12500039 comes last); -100, -175, -180, -185, -204: as for
///         KvApplMan_startAppl
KVAPPLMAN_API int32_t KvApplMan_stepAppl(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                         uint32_t applId) KV_NOEXCEPT;

/// Lists the application processes of a target that are in a state.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param state a state as item 0 delivers it, 0 to 6; what each lists is the target's business
/// @param applIds receives the application IDs; set to zeros first; may be null when count is 0
/// @param count in: elements of applIds. Out: the number of IDs, on success and on -200
/// @return 0; -100: count is null, applIds is null with a count above 0, or a handle is of no use; -180: no command
///         channel; -185: the call failed; -200: count is negative (nothing is written) or too small; -210: unknown
///         state; -215: the target refused
KVAPPLMAN_API int32_t KvApplMan_getApplications(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                                uint32_t state, uint32_t* applIds, int32_t* count) KV_NOEXCEPT;

/// Lists the application processes of a target with their information texts, at most 128. Every part of the list is a
/// request of its own, so that the list is no snapshot.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param list receives the list, which the host frees with KvApplMan_freeApplInfoList; null when it is empty, after a
///        failure, and when there is no memory for it
/// @param count receives the number of its elements
/// @param name lists only applications whose file name without its last extension is this one, case-sensitive; null or
///        empty lists all
/// @return 0, also when nothing is listed (for a name with 0x1250005c); -100: list or count is null (0x1250005b), or a
///         handle is of no use; -175, -204: an item could not be read; -180: no command channel; -185: a call failed;
///         -200: more than 128 applications, or a text of 256 bytes or more; -215: the target refused
KVAPPLMAN_API int32_t KvApplMan_getApplInfoList(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                                KvTApplicationInfo** list, uint32_t* count,
                                                const char* name) KV_NOEXCEPT;

/// Frees a list of KvApplMan_getApplInfoList; one that was freed already is left alone. Sends nothing, does not block.
/// @param list the list; becomes null; null = nothing happens
/// @param count the number of its elements; becomes 0; null = nothing happens
KVAPPLMAN_API void KvApplMan_freeApplInfoList(KvTApplicationInfo** list, uint32_t* count) KV_NOEXCEPT;

/// Lists the processor cores that a target offers. A target that does not offer the request has one core, 1. A call that
/// fails for another reason reads as no cores.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param coreKind 0 or 1; which cores each stands for is the target's business
/// @param count in: elements of coreIds. Out: the number of cores, on success and with the -200 and -100 of a list that
///        does not take them
/// @param coreIds receives the core IDs; set to zeros first; may be null, but then the result is never 0
/// @return 0; -100: count is null or a handle is of no use (code 1024), or coreIds is null (no message); -180: no command
///         channel; -200: count is too small (no message); -205: another coreKind; -841: the target could not answer
KVAPPLMAN_API int32_t KvApplMan_getAvailableCoreIDs(KvCErrorListPool KV_REF pool, void* devHandle,
                                                    void* accessResHandle, uint32_t coreKind, uint32_t* count,
                                                    uint32_t* coreIds) KV_NOEXCEPT;

/// Registers an additional file, or a directory with all that is in it, of an application with the target and transfers
/// it to where the target wants it. Links are followed; a directory to which a link leads back cannot be loaded. What was
/// transferred before a failure stays. Blocks for the whole time.
/// @param pool receives messages, all of them at the end of the call
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process, not 0
/// @param sourcePathUtf8 host path of the file or directory
/// @param targetPathUtf8 handed to the target
/// @param targetNameUtf8 handed to the target
/// @param fileType 512: a directory; any other: a file. 6 is tried as 2 (without load options) when the target does not
///        know it
/// @param fileFlagsAndLoadOptions bits 0 to 23: flags, handed to the target; bits 24 to 31: load options, 0 (others are
///        refused by the transfer)
/// @param progressCallback called on the calling thread; may be null. It may call functions of this library, with
///        another pool
/// @param userData handed to progressCallback; may be null
/// @param additionalInfo handed to the target, unless it offers the older request only; may be null
/// @return 0; -100: an argument is missing, a handle is of no use or memory ran out; -180: no command channel; -185: the
///         call failed; -190, -191, -195: the transfer failed; -830: there is no such file, or directory for type 512;
///         -832: the target refused, named no place for the file, or knows no directories (0x12500022)
KVAPPLMAN_API int32_t KvApplMan_loadFileUtf8(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                             uint32_t applId, const char* sourcePathUtf8, const char* targetPathUtf8,
                                             const char* targetNameUtf8, uint32_t fileType,
                                             uint32_t fileFlagsAndLoadOptions,
                                             KvTApplManProgressCallback progressCallback, void* userData,
                                             const char* additionalInfo) KV_NOEXCEPT;

/// Lists the additional files that a target has registered for an application.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process, not 0
/// @param fileCount in: elements of fileInfoList. Out: the number of files, on success and with 0x12500027; 0 otherwise,
///        but untouched when an argument is missing
/// @param fileInfoList receives the files; set to zeros first; may be null when fileCount is 0
/// @return 0; -100: an argument is missing or a handle is of no use; -180: no command channel; -185: the call failed;
///         -833: fileCount is too small (0x12500027, nothing is copied) or the target refused (0x1250002c)
KVAPPLMAN_API int32_t KvApplMan_getFileInfo(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                            uint32_t applId, uint32_t* fileCount,
                                            TApplManAddFileInfo* fileInfoList) KV_NOEXCEPT;

/// Has a target remove an additional file of an application.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param applId the process, not 0
/// @param targetName the file's name on the target
/// @param fileType the type under which it was loaded
/// @return 0; -100: an argument is missing or a handle is of no use; -180: no command channel; -185: the call failed;
///         -831: the target refused
KVAPPLMAN_API int32_t KvApplMan_removeFile(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                           uint32_t applId, const char* targetName, uint32_t fileType) KV_NOEXCEPT;

/// Lists the applications in a target's flash memory. A call that fails, for whatever reason, reads as an empty list.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param requestMode 0
/// @param count in: elements of flashApplIds. Out: the number of IDs, on success and on -200
/// @param flashApplIds receives the IDs; set to zeros first; may be null when count is 0
/// @return 0; -100: count is null, flashApplIds is null with a count above 0, or a handle is of no use; -180: no command
///         channel; -200: count is too small (0x1250003c); -850: another requestMode; -851: the target refused
KVAPPLMAN_API int32_t KvApplMan_getFlashApplications(KvCErrorListPool KV_REF pool, void* devHandle,
                                                     void* accessResHandle, uint32_t requestMode, uint32_t* count,
                                                     uint32_t* flashApplIds) KV_NOEXCEPT;

/// Reads one information item of a flash application. Items, buffer and size are those of KvApplMan_getApplInfo, but
/// there are no defaults and the pool is never emptied.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param flashApplId the flash application
/// @param infoId the item
/// @param buffer receives the value; set to zeros first; may be null when size is 0
/// @param size in/out, as for KvApplMan_getApplInfo
/// @return 0; -175: the target did not answer (0x1250003d); -100, -180, -185, -200, -204, -205: as for
///         KvApplMan_getApplInfo
KVAPPLMAN_API int32_t KvApplMan_getFlashApplInfo(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                                 uint32_t flashApplId, uint32_t infoId, void* buffer,
                                                 int32_t* size) KV_NOEXCEPT;

/// Writes the one item of a flash application that can be written: 64-bit values.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param flashApplId the flash application
/// @param infoId 1200
/// @param data the values; need no alignment; may be null when size is 0
/// @param size bytes of data; a remainder of 1 to 7 is not sent
/// @return 0; -100: data is null with a size above 0, or a handle is of no use; -176: the target refused; -180: no
///         command channel; -185: the call failed; -205: another infoId
KVAPPLMAN_API int32_t KvApplMan_setFlashApplParameter(KvCErrorListPool KV_REF pool, void* devHandle,
                                                      void* accessResHandle, uint32_t flashApplId, uint32_t infoId,
                                                      const void* data, uint32_t size) KV_NOEXCEPT;

/// Loads an application from a target's flash memory and waits until the target has done it.
/// @param pool receives messages; emptied when the target cannot tell its command timeout, which is then 120 seconds
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param flashApplId the flash application
/// @return 0; -852: refused, failed or not in time; -100, -175, -180, -185, -204: as for KvApplMan_startAppl
KVAPPLMAN_API int32_t KvApplMan_loadFlashAppl(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                              uint64_t flashApplId) KV_NOEXCEPT;

/// Removes an application from a target's flash memory.
/// @param pool receives messages
/// @param devHandle the target
/// @param accessResHandle yields the access ID
/// @param flashApplId the flash application
/// @return 0; -100: a handle is of no use; -180: no command channel; -185: the call failed; -853: the target refused
KVAPPLMAN_API int32_t KvApplMan_clearFlashAppl(KvCErrorListPool KV_REF pool, void* devHandle, void* accessResHandle,
                                               uint64_t flashApplId) KV_NOEXCEPT;

#ifdef __cplusplus
} // extern "C"
#endif

#endif
