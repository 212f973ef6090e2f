#include "simulation/call_text.h"
#include "simulation/loader/section_readers.h"
#include "simulation/sid_text.h"

namespace simulation {
namespace {

void ReadState(const JsonNode& node, WTS_CONNECTSTATE_CLASS& state) {
    state = node.Word<WTS_CONNECTSTATE_CLASS>({{"active", WTSActive},
                                               {"connected", WTSConnected},
                                               {"connectQuery", WTSConnectQuery},
                                               {"shadow", WTSShadow},
                                               {"disconnected", WTSDisconnected},
                                               {"idle", WTSIdle},
                                               {"listen", WTSListen},
                                               {"reset", WTSReset},
                                               {"down", WTSDown},
                                               {"init", WTSInit}});
}

void ReadAccounts(const JsonNode& node, std::map<std::wstring, std::wstring>& accounts) {
    accounts.clear();
    for (const auto& [name, sid] : node.Members()) {
        const std::wstring text = sid.Text();
        if (!SidFromText(text)) {
            sid.FailExpecting("a SID such as \"S-1-5-21-1-2-3-1001\"");
        }
        accounts[FromUtf8(name)] = text;
    }
}

}  // namespace

void Read(const JsonNode& node, Session& session) {
    const auto readState = [&](const JsonNode& member) { ReadState(member, session.state); };
    node.ReadObject({{"id", Into(session.id), kRequired},
                     {"state", readState},
                     {"user", Into(session.userName)},
                     {"tokenError", Into(session.tokenError)}});
}

void Read(const JsonNode& node, Logons& logons) {
    std::optional<DWORD> console;
    const auto readAccounts = [&](const JsonNode& member) {
        ReadAccounts(member, logons.accounts);
    };
    node.ReadObject({{"consoleSession", Into(console)},
                     {"sessions", Into(logons.sessions)},
                     {"hostAccount", Into(logons.hostAccount)},
                     {"accounts", readAccounts}});
    logons.consoleSession = console.value_or(kNoConsoleSession);
}

}  // namespace simulation
