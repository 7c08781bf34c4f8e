/// What an export has done, in words.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace norva::tool {

/// `1,234,567`; as in all messages, in no locale's way but always the same.
std::string Grouped(std::int64_t Value);

/// `1 record`, `1,000 records`.
std::string Counted(std::int64_t Count, std::string_view Thing);

/// `orders.csv: 6 records, 8 columns, 612 bytes in 0.002 s (3,000 rows/s)`
std::string DoneLine(std::string_view Name, std::int64_t Records, int Columns, std::int64_t Bytes,
                     double Seconds);

}  // namespace norva::tool
