#include <norva/formats/text/Norvaascii.h>
#include <norva/sources/sqlite/SqliteDataSet.h>

int main() {
  norva::TSqliteDataSet Orders("shop.db", "SELECT sku, quantity, total, ordered FROM orders");
  norva::TNorvaASCII Export;
  Export.DataSet = &Orders;
  Export.FileName = "orders.txt";
  Export.Execute();
}
