#include "simulation/call_text.h"
#include "simulation/loader/section_readers.h"
#include "simulation/sid_text.h"

namespace simulation {
namespace {

WTS_CONNECTSTATE_CLASS ReadState(const JsonNode& node) {
    return node.Word<WTS_CONNECTSTATE_CLASS>({{"active", WTSActive},
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

Session ReadSession(const JsonNode& node) {
    const JsonObject object(node, kSessionShape);
    Session session;
    session.id = object["id"].Whole<DWORD>();
    ReadIfPresent(object, "state", session.state, ReadState);
    ReadIfPresent(object, "user", session.userName, &JsonNode::Text);
    ReadIfPresent(object, "tokenError", session.tokenError, &JsonNode::Whole<DWORD>);
    return session;
}

std::map<std::wstring, std::wstring> ReadAccounts(const JsonNode& node) {
    std::map<std::wstring, std::wstring> accounts;
    for (const auto& [name, sid] : node.Members()) {
        const std::wstring text = sid.Text();
        if (!SidFromText(text)) {
            sid.FailExpecting("a SID such as \"S-1-5-21-1-2-3-1001\"");
        }
        accounts[FromUtf8(name)] = text;
    }
    return accounts;
}

DWORD ReadConsoleSession(const JsonNode& node) {
    return node.IsNull() ? kNoConsoleSession : node.Whole<DWORD>();
}

}  // namespace

Logons ReadLogons(const JsonNode& node) {
    const JsonObject object(node, kLogonsShape);
    Logons logons;
    ReadIfPresent(object, "consoleSession", logons.consoleSession, ReadConsoleSession);
    ReadIfPresent(object, "hostAccount", logons.hostAccount, &JsonNode::Text);
    ReadIfPresent(object, "accounts", logons.accounts, ReadAccounts);
    if (const auto sessions = object.Find("sessions")) {
        for (const JsonNode& item : sessions->Items()) {
            logons.sessions.push_back(ReadSession(item));
        }
    }
    return logons;
}

}  // namespace simulation
