-- What Anna has added to the lists. It may be brought back any number of times.
DELETE FROM Lookup WHERE LookupFieldName = 'Companies.Branch' AND LookupValue = 'Shipyards';
INSERT INTO Lookup VALUES ('Companies.Branch', 'Shipyards', 'Anna: ask for the yard', '0');
