-- A small shop, to try Norva with:   sqlite3 shop.db < shop.sql
-- Between them the tables hold every column type that the SQLite source knows.

CREATE TABLE customers (
  id       INTEGER PRIMARY KEY,
  name     VARCHAR(40) NOT NULL,
  city     VARCHAR(30),
  country  CHAR(2),
  born     DATE,
  vip      BOOLEAN NOT NULL,
  discount DECIMAL(4,2),
  notes    TEXT
);
INSERT INTO customers VALUES
  (1, 'Anna Müller',        'Köln',       'DE', '1976-03-08', 1, 12.5, 'Prefers "express" delivery, always'),
  (2, 'José García',        'Málaga',     'ES', '1988-11-30', 0, NULL, NULL),
  (3, 'Sean O''Brien',      'Dublin',     'IE', NULL,         1, 5,    'Two lines:' || char(13, 10) || 'call before noon'),
  (4, 'Zoë Lefèvre',        'Liège',      'BE', '2001-02-28', 0, 0,    ''),
  (5, 'Søren Ødegård',      'Tromsø',     'NO', '1969-07-20', 1, 7.25, 'Tax id <pending> & unconfirmed'),
  (6, 'Łukasz Żółw',        'Kraków',     'PL', '1995-12-24', 0, NULL, 'Semicolons; commas, and tabs:' || char(9) || 'all of them'),
  (7, '山田 太郎',           '東京',        'JP', '1982-05-05', 0, 2.5,  NULL),
  (8, 'Ines Braunschweiger', NULL,        'AT', '1900-01-01', 0, NULL, '100% cotton_only #1 {ever}');

CREATE TABLE products (
  sku         VARCHAR(12) PRIMARY KEY,
  title       VARCHAR(60) NOT NULL,
  price       MONEY NOT NULL,
  weight_kg   REAL,
  stock       SMALLINT NOT NULL,
  sold        BIGINT NOT NULL,
  rating      DOUBLE,
  in_catalog  BOOL NOT NULL,
  opens_at    TIME,
  picture     BLOB
);
INSERT INTO products VALUES
  ('TEA-001',  'Tea, "Earl Grey", 100 g', 4.95,    0.112,  250, 1830472,        4.5,  1, '08:30',    NULL),
  ('CUP-010',  'Cup 3" wide',             12,      0.34,     0, 99120,          3.75, 1, '08:30:00', x'89504E470D0A1A0A'),
  ('POT-200',  'Teapot; cast iron',       89.9,    2.75,    12, 4117,           4.9,  1, NULL,       NULL),
  ('BOX-007',  'Gift box <large>',        7.5,     NULL,   -3,  0,              NULL, 0, '17:45:30', NULL),
  ('SET-999',  'Set “Gentleman”',         1234.56, 12.0,     1, 9007199254740993, 5,  1, '00:00:00', NULL),
  ('FREE-0',   'Sample',                  0,       0.001, 32767, 1,              1e-7, 1, '23:59:59', NULL);

CREATE TABLE orders (
  id        INTEGER PRIMARY KEY,
  customer  INT NOT NULL REFERENCES customers(id),
  sku       VARCHAR(12) NOT NULL REFERENCES products(sku),
  quantity  INT NOT NULL,
  total     CURRENCY NOT NULL,
  ordered   DATETIME NOT NULL,
  shipped   DATETIME,
  paid      BOOLEAN
);
INSERT INTO orders VALUES
  (1001, 1, 'TEA-001', 3,  14.85,   '2024-01-31 09:15:00', '2024-02-02 00:00:00', 1),
  (1002, 3, 'POT-200', 1,  89.9,    '2024-02-29 23:59:59', '2024-03-04 14:30:00', 1),
  (1003, 2, 'CUP-010', 12, 144,     '2024-12-31 12:00:00', NULL,                  0),
  (1004, 5, 'SET-999', 1,  1234.56, '2025-06-15T07:45:30', '2025-06-20 08:00:00', 1),
  (1005, 7, 'FREE-0',  1,  0,       '2025-10-26 02:30:00', NULL,                  NULL),
  (1006, 1, 'BOX-007', 2,  15,      '2026-01-01 00:00:00', '2026-01-05 16:20:10', 1),
  (1007, 4, 'CUP-010', 1,  12,      '2026-02-14 18:05:00', NULL,                  0),
  (1008, 6, 'TEA-001', 40, 198,     '2026-03-03 03:03:03', '2026-03-04 00:00:01', 1);

CREATE VIEW sales AS
  SELECT o.id, c.name AS customer, p.title AS product, o.quantity, o.total, o.ordered, o.paid
  FROM orders o JOIN customers c ON c.id = o.customer JOIN products p ON p.sku = o.sku
  ORDER BY o.id;
