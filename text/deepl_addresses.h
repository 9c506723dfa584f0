#pragma once

/// Where DeepL answers.
namespace kivra::deepl_addresses {

inline constexpr const char* freeHost = "api-free.deepl.com";
inline constexpr const char* proHost = "api.deepl.com";

/// Keys of the free plan end with this.
inline constexpr const char* freeKeySuffix = ":fx";

/// Where users get a key of the free plan.
inline constexpr const char* freeKeyPage = "https://www.deepl.com/pro-api";

}  // namespace kivra::deepl_addresses
