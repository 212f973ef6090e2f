// Who is logged on at the machine, seen from a process that may run under another account.
#pragma once

#include <string>

/// SID text of the user at the console ("S-1-5-..."). When the console user's name yields none,
/// that of the first active session's user; empty when neither is found.
///
/// Where the process may not query user tokens, or nobody is logged on, the answer is the SID of
/// the account that the calling thread runs as. Callable from any thread. Reads the terminal
/// services' session list and the local security authority's account database.
std::wstring GetActiveUserSid();

/// Name of the session's user in the form DOMAIN\user; empty when unknown.
///
/// Impersonates that user on the calling thread for the span of the name query and reverts before
/// it returns. Without a token it is the name of the account that the thread runs as.
std::wstring GetSessionUserName(unsigned long sessionId);

/// SID text of an account, looked up on the local system; empty on failure.
std::wstring GetUserSid(const std::wstring& accountName);
