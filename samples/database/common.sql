-- The tables that the installed database and the template of the update have alike.
CREATE TABLE [version] ([Version] TEXT(20), [Changed] DATETIME);
CREATE TABLE Counters (TableName TEXT(30), CurCount TEXT(12));
CREATE UNIQUE INDEX PrimaryKey ON Counters (TableName) WITH PRIMARY;

CREATE TABLE Contacts (ContactIntID TEXT(12), CompIntID TEXT(12), DisplayName TEXT(60),
                       EMail TEXT(60), Notes MEMO, UserIDs TEXT(50));
CREATE UNIQUE INDEX PrimaryKey ON Contacts (ContactIntID) WITH PRIMARY;
CREATE INDEX ByCompany ON Contacts (CompIntID);

CREATE TABLE Consultants (ConsIntID TEXT(12), ConsultantID TEXT(20), DisplayName TEXT(60),
                          Rate CURRENCY, UserIDs TEXT(50));
CREATE UNIQUE INDEX PrimaryKey ON Consultants (ConsIntID) WITH PRIMARY;
CREATE UNIQUE INDEX ByNumber ON Consultants (ConsultantID);

CREATE TABLE Requirements (ReqIntID TEXT(12), CompIntID TEXT(12), Title TEXT(60), Remote YESNO,
                           UserIDs TEXT(50));
CREATE UNIQUE INDEX PrimaryKey ON Requirements (ReqIntID) WITH PRIMARY;

CREATE TABLE EMailsSent (EMSentIntID TEXT(12), SentToIntID TEXT(12), MailType TEXT(20), Info MEMO,
                         SentToDisplayName TEXT(60), SentFromName TEXT(60), UserIDs TEXT(50));
CREATE UNIQUE INDEX PrimaryKey ON EMailsSent (EMSentIntID) WITH PRIMARY;

CREATE TABLE EMailsLinked (EMLinkIntID TEXT(12), Subject TEXT(100), UserIDs TEXT(50));
CREATE UNIQUE INDEX PrimaryKey ON EMailsLinked (EMLinkIntID) WITH PRIMARY;

CREATE TABLE Reminders (RemIntID TEXT(12), ItemIntID TEXT(12), RemType TEXT(20), ApptType TEXT(20),
                        ApptSubType TEXT(30), RemField TEXT(20), Categories TEXT(50),
                        Owners TEXT(50), StartTime DATETIME, UserIDs TEXT(50));
CREATE UNIQUE INDEX PrimaryKey ON Reminders (RemIntID) WITH PRIMARY;
CREATE INDEX ByItem ON Reminders (ItemIntID);

CREATE TABLE Links (LinkNumber COUNTER, FromID TEXT(12), ToID TEXT(12), [Type] SHORT,
                    SubType SHORT);
CREATE UNIQUE INDEX PrimaryKey ON Links (LinkNumber) WITH PRIMARY;
CREATE INDEX ByOrigin ON Links (FromID);

CREATE TABLE Classifications (TableName TEXT(30), ClassificationType TEXT(30),
                              ClassificationName TEXT(50));
CREATE TABLE Lookup (LookupFieldName TEXT(60), LookupValue TEXT(80), LookupDesc TEXT(100),
                     DisplayOrder TEXT(10));
CREATE INDEX ByValue ON Lookup (LookupFieldName, LookupValue);
CREATE TABLE Aliases ([Name] TEXT(50), Alias TEXT(50));

CREATE TABLE MLinkInfo (MLinkIntID TEXT(12), FromID TEXT(12), ToID TEXT(12), [Type] SHORT,
                        SubType SHORT, MLinkType TEXT(20), MLinkSubType TEXT(20), Subject TEXT(100),
                        Notes MEMO, [DateTime] DATETIME, CreateDate DATETIME, EditDate DATETIME,
                        UserIDs TEXT(50));
CREATE UNIQUE INDEX PrimaryKey ON MLinkInfo (MLinkIntID) WITH PRIMARY;
