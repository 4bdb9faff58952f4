// Members of a configuration document, checked for their type when they are read.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "output.h"

namespace aaactl {

/// What `name` holds, or `missing` when the document lacks it.
uint32_t DocumentNumber(const Json& document, const char* name, uint32_t missing, uint32_t maximum);
bool DocumentFlag(const Json& document, const char* name, bool missing);
std::string DocumentText(const Json& document, const char* name);
Json DocumentObject(const Json& document, const char* name);
Json DocumentList(const Json& document, const char* name);
std::vector<std::string> DocumentTexts(const Json& document, const char* name);

/// Refuses members that are none of `known`; `object` says whose they are.
void RefuseUnknown(const Json& document, const std::string& object,
                   std::initializer_list<const char*> known);
/// Refuses a value that is no object.
void DemandObject(const Json& document, const std::string& object);

}  // namespace aaactl
