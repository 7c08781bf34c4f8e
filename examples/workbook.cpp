// The sales of the sample shop as a workbook: titles, field formats, striped rows and a total.
#include <norva/formats/spreadsheet/Norvaxls.h>
#include <norva/sources/sqlite/SqliteDataSet.h>

int main() {
  using namespace norva;
  TSqliteDataSet Sales("shop.db", "SELECT ordered, customer, product, quantity, total FROM sales");
  TNorvaXLS Export;
  Export.DataSet = &Sales;
  Export.FileName = "sales.xls";
  Export.Options.SetSheetTitle("Sales");
  Export.Header.Add("Sales of the sample shop");
  Export.Footer.Add("Prices in euros, without VAT");
  Export.Captions.Assign(TStringList{"ordered=Ordered", "customer=Customer", "product=Product",
                                     "quantity=Quantity", "total=Total"});
  Export.ColumnsWidth.Assign(
      TStringList{"ordered=17", "customer=20", "product=26", "quantity=10", "total=12"});

  TxlsFormat& title = Export.Options.HeaderFormat;
  title.Font.Size = 14;
  title.Font.Style = {xfsBold};
  title.Font.Color = clrDarkBlue;

  TxlsFormat& captions = Export.Options.CaptionsFormat;
  captions.Fill.Pattern = ptSolid;
  captions.Fill.Background = clrDarkBlue;
  captions.Font.Color = clrWhite;
  captions.Alignment.Horizontal = halCenter;

  Export.StripStyle = ssRow;
  for (const TxlsColor color : {clrWhite, clrPaleBlue}) {
    TxlsFormat& row = Export.RowStyles.Add();
    row.Fill.Pattern = ptSolid;
    row.Fill.Background = color;
  }

  Export.UserFormats.Assign(TStringList{"ordered=yyyy-mm-dd hh:mm", "total=#,##0.00"});
  TxlsFormat& totals = Export.Options.AggregateFormat;
  totals.Font.Style = {xfsBold};
  totals.Borders.Top.Style = bstDouble;
  for (const char* name : {"quantity", "total"}) {
    TxlsFieldFormat& field = Export.FieldFormats.Add();
    field.FieldName = name;
    field.Aggregate = aggSum;
    field.Fill.Pattern = ptSolid;  // a field's own format stands before the stripes
    field.Fill.Background = clrLightYellow;
  }
  Export.OnGetAggregateParams = [](TObject&, int Col, TxlsFormat&, std::string& FormatText,
                                   std::string& Value) {
    if (Col == 0) Value = "Total";
    if (Col == 4) FormatText = "#,##0.00";
  };
  Export.Execute();
}
