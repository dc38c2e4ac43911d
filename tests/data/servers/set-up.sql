-- What the application's own database provides on a server, for the tests: tables, the functions of
-- its schema "dbo", and an account. One database for each of the server's two kinds.

CREATE DATABASE dbo;
CREATE DATABASE korvo;
CREATE DATABASE korvo_oracle;

-- Text without blanks at its ends; null is empty, as in the classic language.
CREATE FUNCTION dbo.TrimVBA(value LONGTEXT) RETURNS LONGTEXT DETERMINISTIC
  RETURN TRIM(COALESCE(value, ''));
CREATE FUNCTION dbo.IsNullVBA(value LONGTEXT) RETURNS INTEGER DETERMINISTIC
  RETURN value IS NULL;

-- A name without a schema is looked for in the connection's own database.
CREATE FUNCTION korvo.GetDate() RETURNS DATETIME NOT DETERMINISTIC RETURN NOW();
CREATE FUNCTION korvo_oracle.GetDate() RETURNS DATETIME NOT DETERMINISTIC RETURN NOW();

CREATE TABLE korvo.Counters (
  TableName VARCHAR(50) NOT NULL PRIMARY KEY,
  CurCount VARCHAR(50)
);
INSERT INTO korvo.Counters VALUES ('SiteID', '0'), ('Companies', 'CM00000041');
CREATE TABLE korvo_oracle.Counters LIKE korvo.Counters;
INSERT INTO korvo_oracle.Counters SELECT * FROM korvo.Counters;

CREATE TABLE korvo.Lookup (
  LookupFieldName VARCHAR(50),
  LookupValue VARCHAR(100),
  LookupDesc VARCHAR(255),
  DisplayOrder VARCHAR(10),
  INDEX FieldAndValue (LookupFieldName, LookupValue)
);
CREATE TABLE korvo_oracle.Lookup LIKE korvo.Lookup;

-- The account that the application logs in with, and one whose password needs braces.
CREATE USER 'korvo'@'%' IDENTIFIED BY 'Geheim-Wort7';
CREATE USER 'braces'@'%' IDENTIFIED BY 'Geheim;{7}';
GRANT ALL ON korvo.* TO 'braces'@'%';
GRANT ALL ON korvo.* TO 'korvo'@'%';
GRANT ALL ON korvo_oracle.* TO 'korvo'@'%';
GRANT EXECUTE ON dbo.* TO 'korvo'@'%';
-- Tests that want a database for themselves make one, and drop it.
GRANT ALL ON `test\_%`.* TO 'korvo'@'%';

-- Nobody gets in from the network without a password, as the tests' own system user would.
DELETE FROM mysql.global_priv WHERE User = '' OR (User = 'root' AND Host <> 'localhost');
FLUSH PRIVILEGES;
