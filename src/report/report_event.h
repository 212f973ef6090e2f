// Sends an event. Only the optimisation report builds and sends its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// One string pair of an event. Each reporter decides on the value's encoding.
struct EventField {
    const char* key;
    std::string value;
};

/// Sends one event with its fields in order. Fire and forget; returns when the event library has
/// taken the event. Callable from any thread.
void SendEvent(std::int32_t eventId, const std::vector<EventField>& fields);
