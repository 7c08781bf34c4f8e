/// The fields of a SQLite data set: one class for each way of reading a stored value.
#pragma once

#include <memory>
#include <string>

#include <norva/platform/DataSet.h>
#include <norva/sources/sqlite/internal/SqliteCursor.h>

namespace norva::internal {

/// The field type that a declared column type asks for; ftUnknown when it says nothing.
TFieldType FieldTypeOf(const std::string& DeclaredType);
/// `n` of a declared type "...(n)" or "...(n, m)"; 0 without one.
int DeclaredSize(const std::string& DeclaredType);

/// The field for column `Column` of `Cursor`, by its declared type or, without one that says
/// something, by the value in the first record, on which the cursor must stand. The cursor must
/// outlive it.
std::unique_ptr<TField> MakeSqliteField(TSqliteCursor& Cursor, int Column, std::string FieldName);

}  // namespace norva::internal
