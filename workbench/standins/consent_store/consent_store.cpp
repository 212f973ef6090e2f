#include "platform/consent_store.h"

#include <windows.h>

#include <deque>

#include "standins/common/state_lock.h"
#include "standins/consent_store/consent_store_control.h"

namespace {

using standins::ExclusiveLock;

struct State {
    SRWLOCK lock = SRWLOCK_INIT;
    /// Never empty: the last one stays.
    std::deque<std::string> answers = {std::string()};
    unsigned askCount = 0;
};

State state;

}  // namespace

std::string AgreementSign::IsAgreeClause() {
    const ExclusiveLock exclusive(state.lock);
    if (!exclusive.IsHeld()) {
        return {};
    }
    ++state.askCount;
    std::string answer = state.answers.front();
    if (state.answers.size() > 1) {
        state.answers.pop_front();
    }
    return answer;
}

void ConsentStore_SetAnswer(const char* text) { ConsentStore_SetAnswers(&text, 1); }

void ConsentStore_SetAnswers(const char* const* texts, size_t count) {
    std::deque<std::string> answers(texts, texts + count);
    const ExclusiveLock exclusive(state.lock);
    state.answers = std::move(answers);
}

unsigned ConsentStore_AskCount() {
    const ExclusiveLock exclusive(state.lock);
    return state.askCount;
}

void ConsentStore_Reset() {
    ConsentStore_SetAnswer("");
    const ExclusiveLock exclusive(state.lock);
    state.askCount = 0;
}
