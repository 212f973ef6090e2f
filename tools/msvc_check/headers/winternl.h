// Wine's public record of a process lacks the number of threads, which Microsoft's has.
#pragma once
#define _SYSTEM_PROCESS_INFORMATION WineSystemProcessInformation
#define SYSTEM_PROCESS_INFORMATION WineProcessInformation
#define PSYSTEM_PROCESS_INFORMATION WineProcessInformationPointer
#include_next <winternl.h>
#undef _SYSTEM_PROCESS_INFORMATION
#undef SYSTEM_PROCESS_INFORMATION
#undef PSYSTEM_PROCESS_INFORMATION

typedef struct _SYSTEM_PROCESS_INFORMATION {
    ULONG NextEntryOffset;
    ULONG NumberOfThreads;
    BYTE Reserved1[48];
    UNICODE_STRING ImageName;
    LONG BasePriority;
    HANDLE UniqueProcessId;
} SYSTEM_PROCESS_INFORMATION;
