-- Keys for the tables of a shop that has sold for some time. Without them the screens read whole tables: the orders of one
-- shift out of two million sold lines take minutes instead of milliseconds.
--
--   mysql -u root -p zrt < tune.sql
--
-- Can be run at any time and again: it adds the keys that are missing and leaves tables alone that don't exist (yet).
-- The terminals' tables are locked while a key is built, so run it outside the opening hours. Needs server 5.0 or later;
-- the detour over PREPARE is there because no MySQL server knows "ADD KEY IF NOT EXISTS", and the names are compared in one
-- character set because the server's own tables and the client may use two that don't go together.

SET @keys = (SELECT GROUP_CONCAT(clause) FROM (
  SELECT 'zrt_datetime' AS name, 'ADD KEY zrt_datetime (DATETIME)' AS clause
  UNION ALL SELECT 'zrt_cod_datetime', 'ADD KEY zrt_cod_datetime (COD, DATETIME)'
  UNION ALL SELECT 'zrt_num_ter', 'ADD KEY zrt_num_ter (NUM, TER)'
) wanted
  WHERE EXISTS (SELECT * FROM information_schema.COLUMNS
                WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'PROD' AND COLUMN_NAME = 'DATETIME')
    AND NOT EXISTS (SELECT * FROM information_schema.STATISTICS
                    WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'PROD' AND CONVERT(INDEX_NAME USING latin1) = CONVERT(name USING latin1)));
SET @change = IF(@keys IS NULL, 'DO 0', CONCAT('ALTER TABLE PROD ', @keys));
PREPARE change_keys FROM @change;
EXECUTE change_keys;
DEALLOCATE PREPARE change_keys;

SET @keys = (SELECT GROUP_CONCAT(clause) FROM (
  SELECT 'zrt_num_ter' AS name, 'ADD KEY zrt_num_ter (NUM, TER)' AS clause
  UNION ALL SELECT 'zrt_dat', 'ADD KEY zrt_dat (DAT)'
  UNION ALL SELECT 'zrt_tim', 'ADD KEY zrt_tim (TIM)'
) wanted
  WHERE EXISTS (SELECT * FROM information_schema.COLUMNS
                WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'KASSA' AND COLUMN_NAME = 'DAT')
    AND NOT EXISTS (SELECT * FROM information_schema.STATISTICS
                    WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'KASSA' AND CONVERT(INDEX_NAME USING latin1) = CONVERT(name USING latin1)));
SET @change = IF(@keys IS NULL, 'DO 0', CONCAT('ALTER TABLE KASSA ', @keys));
PREPARE change_keys FROM @change;
EXECUTE change_keys;
DEALLOCATE PREPARE change_keys;

-- A balance is summed from the key alone, a document's rows are found by product. ID stands before KOL because of documents of
-- one second: the last one written is the one whose balance counts. The two keys that this script gave before go.
SET @keys = (SELECT GROUP_CONCAT(clause) FROM (
  SELECT 'zrt_balance' AS name, 'ADD KEY zrt_balance (COD, RUN, DATEDOC, ID, KOL)' AS clause, 0 AS present
  UNION ALL SELECT 'zrt_doc_cod', 'ADD KEY zrt_doc_cod (DOC, COD)', 0
  UNION ALL SELECT 'zrt_docnext', 'ADD KEY zrt_docnext (DOCNEXT)', 0
  UNION ALL SELECT 'zrt_cod_run_datedoc', 'DROP KEY zrt_cod_run_datedoc', 1
  UNION ALL SELECT 'zrt_doc', 'DROP KEY zrt_doc', 1
) wanted
  WHERE EXISTS (SELECT * FROM information_schema.COLUMNS
                WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'REGISTR' AND COLUMN_NAME = 'COD')
    AND present = (SELECT COUNT(*) > 0 FROM information_schema.STATISTICS
                   WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'REGISTR' AND CONVERT(INDEX_NAME USING latin1) = CONVERT(name USING latin1)));
SET @change = IF(@keys IS NULL, 'DO 0', CONCAT('ALTER TABLE REGISTR ', @keys));
PREPARE change_keys FROM @change;
EXECUTE change_keys;
DEALLOCATE PREPARE change_keys;

SET @keys = (SELECT GROUP_CONCAT(clause) FROM (
  SELECT 'zrt_rez_lv' AS name, 'ADD KEY zrt_rez_lv (REZ, LV)' AS clause
) wanted
  WHERE EXISTS (SELECT * FROM information_schema.COLUMNS
                WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'HOTKEYS' AND COLUMN_NAME = 'LV')
    AND NOT EXISTS (SELECT * FROM information_schema.STATISTICS
                    WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'HOTKEYS' AND CONVERT(INDEX_NAME USING latin1) = CONVERT(name USING latin1)));
SET @change = IF(@keys IS NULL, 'DO 0', CONCAT('ALTER TABLE HOTKEYS ', @keys));
PREPARE change_keys FROM @change;
EXECUTE change_keys;
DEALLOCATE PREPARE change_keys;

SET @keys = (SELECT GROUP_CONCAT(clause) FROM (
  SELECT 'zrt_cod' AS name, 'ADD KEY zrt_cod (COD)' AS clause
  UNION ALL SELECT 'zrt_barcode', 'ADD KEY zrt_barcode (BARCODE)'
) wanted
  WHERE EXISTS (SELECT * FROM information_schema.COLUMNS
                WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'TOVAR' AND COLUMN_NAME = 'COD')
    AND NOT EXISTS (SELECT * FROM information_schema.STATISTICS
                    WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'TOVAR' AND CONVERT(INDEX_NAME USING latin1) = CONVERT(name USING latin1)));
SET @change = IF(@keys IS NULL, 'DO 0', CONCAT('ALTER TABLE TOVAR ', @keys));
PREPARE change_keys FROM @change;
EXECUTE change_keys;
DEALLOCATE PREPARE change_keys;

SET @keys = (SELECT GROUP_CONCAT(clause) FROM (
  SELECT 'zrt_rez' AS name, 'ADD KEY zrt_rez (REZ)' AS clause
) wanted
  WHERE EXISTS (SELECT * FROM information_schema.COLUMNS
                WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'DISCOUNT' AND COLUMN_NAME = 'REZ')
    AND NOT EXISTS (SELECT * FROM information_schema.STATISTICS
                    WHERE TABLE_SCHEMA = DATABASE() AND TABLE_NAME = 'DISCOUNT' AND CONVERT(INDEX_NAME USING latin1) = CONVERT(name USING latin1)));
SET @change = IF(@keys IS NULL, 'DO 0', CONCAT('ALTER TABLE DISCOUNT ', @keys));
PREPARE change_keys FROM @change;
EXECUTE change_keys;
DEALLOCATE PREPARE change_keys;
