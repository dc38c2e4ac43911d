-- The database of an installed Korvo 3.5.2.
CREATE TABLE Companies (CompIntID TEXT(12), CompanyName TEXT(40), City TEXT(30), Phone TEXT(20),
                        Employees SHORT, UserIDs TEXT(50));
CREATE UNIQUE INDEX PrimaryKey ON Companies (CompIntID) WITH PRIMARY;
CREATE INDEX ByName ON Companies (CompanyName);

INSERT INTO [version] ([Version], [Changed]) VALUES ('3.5.2', #3/14/2005 9:26:53 AM#);
INSERT INTO Counters (TableName, CurCount) VALUES ('SiteID', '0');
INSERT INTO Counters (TableName, CurCount) VALUES ('Companies', 'CM00001000');
INSERT INTO Counters (TableName, CurCount) VALUES ('Contacts', 'CN00002500');
INSERT INTO Counters (TableName, CurCount) VALUES ('Consultants', 'CS00000300');

INSERT INTO Lookup VALUES ('Contacts.Source', 'Trade fair', 'Met at a fair', '1');
INSERT INTO Lookup VALUES ('Contacts.Source', 'Recommended', 'Anna: by whom?', '2');
INSERT INTO Lookup VALUES ('Companies.Branch', 'Building', '', '1');
INSERT INTO Lookup VALUES ('Companies.Branch', 'O''Neil group', 'All their firms', '2');
INSERT INTO Classifications VALUES ('Companies', 'Size', 'Small');
INSERT INTO Classifications VALUES ('Companies', 'Size', 'Large');
INSERT INTO Classifications VALUES ('Contacts', 'Importance', 'High');
INSERT INTO Aliases VALUES ('Robert', 'Bob');
