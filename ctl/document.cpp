#include "document.h"

namespace aaactl {
namespace {

template <typename T>
T Member(const Json& document, const char* name, T missing, bool (Json::*is)() const noexcept,
         const char* type) {
    if (!document.contains(name)) return missing;
    const Json& value = document.at(name);
    if (!(value.*is)()) {
        RefuseUsage("setting \"" + std::string(name) + "\"", std::string("it is no ") + type,
                    "Mend the file");
    }
    return value.get<T>();
}

}  // namespace

uint32_t DocumentNumber(const Json& document, const char* name, uint32_t missing,
                        uint32_t maximum) {
    if (!document.contains(name)) return missing;
    const Json& value = document.at(name);
    if (!value.is_number_unsigned() || value.get<uint64_t>() > maximum) {
        RefuseUsage("setting \"" + std::string(name) + "\"",
                    "it is no whole number from 0 to " + std::to_string(maximum), "Mend the file");
    }
    return value.get<uint32_t>();
}

bool DocumentFlag(const Json& document, const char* name, bool missing) {
    return Member<bool>(document, name, missing, &Json::is_boolean, "truth value");
}

std::string DocumentText(const Json& document, const char* name) {
    return Member<std::string>(document, name, "", &Json::is_string, "text");
}

Json DocumentObject(const Json& document, const char* name) {
    return Member<Json>(document, name, Json::object(), &Json::is_object, "object");
}

Json DocumentList(const Json& document, const char* name) {
    return Member<Json>(document, name, Json::array(), &Json::is_array, "list");
}

std::vector<std::string> DocumentTexts(const Json& document, const char* name) {
    std::vector<std::string> texts;
    for (const Json& item : DocumentList(document, name)) {
        if (!item.is_string()) {
            RefuseUsage("setting \"" + std::string(name) + "\"", "an entry of its list is no text",
                        "Mend the file");
        }
        texts.push_back(item.get<std::string>());
    }
    return texts;
}

void RefuseUnknown(const Json& document, const std::string& object,
                   std::initializer_list<const char*> known) {
    for (const auto& [name, value] : document.items()) {
        bool found = false;
        for (const char* word : known) found = found || name == word;
        if (!found) {
            RefuseUsage(object + " setting \"" + name + "\"", "there is no such setting",
                        "Mend the file; aaactl config export shows every setting");
        }
    }
}

void DemandObject(const Json& document, const std::string& object) {
    if (!document.is_object()) RefuseUsage(object, "it is no object", "Mend the file");
}

}  // namespace aaactl
