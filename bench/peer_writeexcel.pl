#!/usr/bin/perl
# The benchmark's rows as a workbook through Spreadsheet::WriteExcel.
#
#   peer_writeexcel.pl FILE OUT.xls
#
# Numbers and texts (dates, too, as they are stored) are written by their own methods: the module's
# general one would look at every value to find out what it is.
use strict;
use warnings;

use DBI;
use DBD::SQLite::Constants ':file_open';
use Spreadsheet::WriteExcel;

my ($file, $output) = @ARGV;
my $database = DBI->connect("dbi:SQLite:dbname=$file", '', '',
    {RaiseError => 1, sqlite_unicode => 1, sqlite_open_flags => SQLITE_OPEN_READONLY});
my $rows = $database->prepare('SELECT * FROM bench LIMIT 65000');
$rows->execute;
my %is_number = map { $_ => 1 } qw(BIGINT BOOLEAN INT INTEGER MONEY REAL);
my @is_number = map { $is_number{$_} } @{$rows->{TYPE}};

my $book = Spreadsheet::WriteExcel->new($output) or die "$output: $!\n";
my $sheet = $book->add_worksheet('bench');
$sheet->write_row(0, 0, $rows->{NAME});
for (my $at = 1; my $row = $rows->fetchrow_arrayref; ++$at) {
    for my $column (0 .. $#$row) {
        my $value = $row->[$column];
        next unless defined $value;
        if ($is_number[$column]) { $sheet->write_number($at, $column, $value) }
        else { $sheet->write_string($at, $column, $value) }
    }
}
$book->close or die "$output: $!\n";
