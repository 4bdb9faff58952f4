// Authorization attributes by kind, with a name for each field.
#pragma once

#include <aaadom/types.h>

#include <string>
#include <vector>

#include "client.h"
#include "output.h"

namespace aaactl {

/// Kinds of `attributes` that differ from a new domain's, as {"KIND": {"field": value}}.
Json AttributesToJson(const AuthorAttr& attributes);

/// Sets the fields that `fields` names; refuses unknown fields and values that do not fit.
void SetFieldsFromJson(AuthorAttr& attributes, uint32_t kind, const Json& fields);
/// The same from words of the form field=value.
void SetFieldsFromWords(AuthorAttr& attributes, uint32_t kind,
                        const std::vector<std::string>& words);

bool SameKind(const AuthorAttr& a, const AuthorAttr& b, uint32_t kind);
AuthorAttr DefaultAttributes();

/// A number 0 to 26, or the name of a kind that has one.
uint32_t ParseKind(const std::string& word);
/// Sends an attribute of `kind` to a domain that holds `current`.
void SendAttribute(Client& client, const std::string& domain, uint32_t kind,
                   const AuthorAttr& current, const AuthorAttr& wanted);

/// One line a kind: number, name and fields.
std::string DescribeKinds();

}  // namespace aaactl
