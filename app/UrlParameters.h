#pragma once

#include <map>
#include <string>

struct SendRequest;

/// The settings that a URL carries: decoded values by key. Keys are compared by code units, so
/// their letter case counts.
using UrlParameters = std::map<std::wstring, std::wstring>;

/// Writes the known parameters into `request`; a key that is absent leaves its field as it is. A
/// flag can only be set: any value sets it, even "0".
void ApplyUrlParameters(const UrlParameters& parameters, SendRequest& request);
