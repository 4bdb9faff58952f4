// Words for the numbers of the interface: AAA types, services, methods, states, session classes.
#pragma once

#include <aaadom/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace aaactl {

/// "authentication" 0, "authorization" 4, "accounting" 5.
uint32_t ParseAaaType(const std::string& word);
std::string AaaTypeName(uint32_t aaa_type);

/// "default" is 5; every service also has its number, 0 to 11.
uint32_t ParseService(const std::string& word);
std::string ServiceName(uint32_t service);

/// "scheme1:NAME", "scheme2:NAME", "scheme3:NAME", "local", "none".
MethodEntry ParseMethod(const std::string& word);
std::string MethodName(const MethodEntry& entry);
/// The methods of a list in order of preference, up to the first empty one.
std::vector<std::string> MethodNames(const MethodEntry (&methods)[DOM_METHODS]);
/// At most six methods, in order of preference.
MethodList ParseMethodList(uint32_t aaa_type, uint32_t service,
                           const std::vector<std::string>& words);

/// "active" is 1, "blocked" 0; every other value has its number.
uint16_t ParseState(const std::string& word);
std::string StateName(uint16_t state);

/// 19 to 23.
uint32_t ParseSessionClass(const std::string& word);

/// A decimal or 0x number of at most `maximum`.
uint32_t ParseNumber(const std::string& what, const std::string& word, uint32_t maximum);

}  // namespace aaactl
