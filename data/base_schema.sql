-- The tables that the shop's terminals bring along, as they are before the back office first runs (schema version 0).
-- The program's own upgrades add the rest. Cyrillic is kept as windows-1251 bytes in latin1 columns; the binary order of
-- these bytes is the Russian alphabet, every other latin1 order mixes its letters up.

-- Loaded into a schema made for the shop, which takes over their character set for the tables to come.
ALTER DATABASE CHARACTER SET latin1 COLLATE latin1_bin;

CREATE TABLE TOVAR (
  ID int(11) NOT NULL AUTO_INCREMENT PRIMARY KEY,
  COD int(11),
  COD1 int(11),
  NAME varchar(50),
  OST int(11),          -- thousandths
  KOL int(11),          -- thousandths
  PRISE int(11),        -- hundredths of money
  BARCODE varchar(20),
  NDS int(11),
  REZ int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE PROD (
  ID int(11) NOT NULL AUTO_INCREMENT PRIMARY KEY,
  COD int(11),
  NAME varchar(50),
  KOL int(11),          -- thousandths, as the sums
  PRISE int(11),
  SKID int(11),
  SUM2 int(11),
  TER int(11),
  PERS int(11),
  DATETIME datetime,
  REZ int(11),
  NUM int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE KASSA (
  ID int(11) NOT NULL AUTO_INCREMENT PRIMARY KEY,
  OPER varchar(30),
  SUM1 decimal(12,3),   -- money as it is
  SKID decimal(12,3),
  SUM2 decimal(12,3),
  PLUS decimal(12,3),
  MINUS decimal(12,3),
  TER int(11),
  PERS int(11),
  DAT datetime,
  TIM datetime,
  NUM int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

-- Annulled lines are kept as the terminals showed them: quantity, price and moment are texts.
CREATE TABLE SPION (
  COD int(11),
  NAME varchar(50),
  KOL varchar(20),
  PRISE varchar(20),
  DATETIME varchar(20),
  TER int(11),
  KAS int(11),
  REZ int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE AKZMARK (
  COD int(11),
  MARK varchar(150),
  TER int(11),
  NUM int(11),
  DAT datetime
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

-- Waiters: DATETIME holds the staff card, NUM the access level.
CREATE TABLE KLIENT (
  COD int(11),
  NAME varchar(50),
  TOTAL int(11),
  SUM1 int(11),
  DATETIME varchar(20),
  NUM int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE PERSON (
  COD int(11),
  NAME varchar(50)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE DISCOUNT (
  BARCODE varchar(20),
  TOTAL int(11),
  LASTCASH varchar(20),
  PROZ int(11),
  REZ int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE TOTALSKID (
  ID int(11),
  CARD int(11),
  TOV int(11),
  PROZ int(11),
  TOTAL int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE HOTKEYS (
  ID int(11) NOT NULL PRIMARY KEY,
  CODE int(11),
  REZ int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE CONST (
  COD int(11) NOT NULL PRIMARY KEY,
  N1 varchar(50),
  N2 varchar(50),
  N3 varchar(50),
  N4 varchar(50),
  N5 varchar(50),
  N6 varchar(50),
  N7 varchar(50),
  N8 varchar(50),
  N9 varchar(50),
  N10 varchar(50)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

INSERT INTO CONST (COD) VALUES (1), (2), (3), (4);
UPDATE CONST SET N2=0 WHERE COD=3;

-- The open receipt of each terminal, in plain units.
CREATE TABLE CHECK1 (
  COD int(11),
  NAME varchar(50),
  KOL float,
  PRISE float,
  COST float,
  NDS int(11),
  REZ int(11),
  SKID int(11)
) ENGINE=InnoDB DEFAULT CHARSET=latin1 COLLATE=latin1_bin;

CREATE TABLE CHECK2 LIKE CHECK1;
CREATE TABLE CHECK3 LIKE CHECK1;
CREATE TABLE CHECK4 LIKE CHECK1;
CREATE TABLE CHECK5 LIKE CHECK1;
CREATE TABLE CHECK6 LIKE CHECK1;
CREATE TABLE CHECK7 LIKE CHECK1;
CREATE TABLE CHECK8 LIKE CHECK1;
