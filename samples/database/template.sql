-- The template that the update to Korvo 3.6.0 brings: longer names of companies, more employees, two
-- new fields, a new table, new values of lists.
CREATE TABLE Companies (CompIntID TEXT(12), CompanyName TEXT(100), City TEXT(30), Phone TEXT(20),
                        Employees LONG, UserIDs TEXT(50), WebPage TEXT(150), Founded DATETIME);
CREATE UNIQUE INDEX PrimaryKey ON Companies (CompIntID) WITH PRIMARY;
CREATE INDEX ByName ON Companies (CompanyName);

CREATE TABLE Campaigns (CampaignIntID TEXT(12), Title TEXT(60), Budget CURRENCY, StartDate DATETIME);
CREATE UNIQUE INDEX PrimaryKey ON Campaigns (CampaignIntID) WITH PRIMARY;

INSERT INTO [version] ([Version], [Changed]) VALUES ('3.6.0', #11/30/2005#);
INSERT INTO Lookup VALUES ('Contacts.Source', 'Trade fair', 'At a trade fair', '1');
INSERT INTO Lookup VALUES ('Contacts.Source', 'Web page', 'By our web page', '3');
INSERT INTO Lookup VALUES ('Companies.Branch', 'O''Neil group', '', '2');
INSERT INTO Lookup VALUES ('Companies.Branch', 'Energy', '', '3');
INSERT INTO Aliases VALUES ('Robert', 'Bob');
INSERT INTO Aliases VALUES ('William', 'Bill');
