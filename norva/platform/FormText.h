/// Stores a component's published properties as text and loads them back.
///
///   object Export: TNorvaASCII
///     FileName = 'orders.csv'
///     ExportType = etCSV
///     DataSet = Orders
///     ExportedFields = (
///       'Id'
///       'Name')
///     Formats.IntegerFormat = '0'
///     FieldFormats = <
///       item
///         FieldName = 'Price'
///         Font.Size = 12
///       end>
///   end
///
/// Texts and characters stand in single quotes, a quote inside doubled; control characters stand
/// outside them by their code, `'two'#13#10'lines'`. Every other value has the text form of
/// Property.h. A value equal to its stored default is left out; lists and
/// collections always stand, `()` and `<>` when they are empty.
#pragma once

#include <string>
#include <string_view>

#include <norva/platform/Component.h>
#include <norva/platform/Export.h>

namespace norva {

/// The stored form of `Component`; lines end in LF.
NORVA_EXPORT std::string SaveComponent(const TComponent& Component);

/// Sets the properties that `Text` stores. References are looked up by name among the components
/// of `Component`'s owner. Throws EConvertError naming the line for text that does not fit; the
/// properties before that line are set then.
NORVA_EXPORT void LoadComponent(std::string_view Text, TComponent& Component);

}  // namespace norva
