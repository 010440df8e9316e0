#include "utilities/simulated/DiskBehaviour.h"

#include <chrono>
#include <thread>

namespace tessel {

namespace {

constexpr const char* refusesUnmountKey = "RefusesUnmount";
constexpr const char* ejectFailsKey = "EjectFails";
constexpr const char* authorizationKey = "Authorization";
constexpr const char* exchangedDuringPromptKey = "ExchangedDuringPrompt";
constexpr const char* delaysKey = "Delays";

std::string textAt(const PropertyList::Dictionary& dictionary, const char* key) {
    const auto found = dictionary.find(key);
    const std::string* text = found == dictionary.end() ? nullptr : found->second.asText();
    return text ? *text : "";
}

PropertyList::Dictionary dictionaryAt(const PropertyList::Dictionary& dictionary, const char* key) {
    const auto found = dictionary.find(key);
    const PropertyList::Dictionary* entry =
        found == dictionary.end() ? nullptr : found->second.asDictionary();
    return entry ? *entry : PropertyList::Dictionary{};
}

double seconds(const PropertyList& value) {
    if (const double* real = value.asReal()) return *real;
    const uint64_t* whole = value.asWholeNumber();
    return whole ? static_cast<double>(*whole) : 0;
}

}  // namespace

DiskBehaviour DiskBehaviour::from(const PropertyList::Dictionary& dictionary) {
    DiskBehaviour behaviour{
        .refusesUnmount = textAt(dictionary, refusesUnmountKey),
        .ejectFails = textAt(dictionary, ejectFailsKey),
        .authorization = textAt(dictionary, authorizationKey),
        .exchangedDuringPrompt = dictionaryAt(dictionary, exchangedDuringPromptKey),
    };
    for (const auto& [command, delay] : dictionaryAt(dictionary, delaysKey))
        behaviour.delays[command] = seconds(delay);
    return behaviour;
}

PropertyList::Dictionary DiskBehaviour::dictionary() const {
    return {
        {refusesUnmountKey, refusesUnmount},
        {ejectFailsKey, ejectFails},
        {authorizationKey, authorization},
        {exchangedDuringPromptKey, exchangedDuringPrompt},
        {delaysKey, PropertyList::Dictionary(delays.begin(), delays.end())},
    };
}

void DiskBehaviour::waitBefore(const std::string& command) const {
    const auto delay = delays.find(command);
    if (delay != delays.end()) std::this_thread::sleep_for(std::chrono::duration<double>(delay->second));
}

void merge(PropertyList::Dictionary& dictionary, const PropertyList::Dictionary& changes) {
    for (const auto& [key, value] : changes)
        dictionary.insert_or_assign(key, value);
}

}  // namespace tessel
