-- A few demo accounts, and the logins of the servers. Run once, on the first start, behind the statements
-- that make the tables.

-- The first three are the game masters of id_table.txt.
INSERT IGNORE INTO glogin.account (AID, Name, Pass, Gender, Mail) VALUES
    (100000, 'marian', 'lantern', 0, 'marian@example.org'),
    (100001, 'osric', 'ferryman', 1, 'osric@example.org'),
    (100002, 'yolanda', 'copperkey', 0, 'yolanda@example.org'),
    (100003, 'tobias', 'windmill', 1, 'tobias@example.org'),
    (100004, 'ines', 'saltmarsh', 0, 'ines@example.org'),
    (100005, 'gunnar', 'longboat', 1, 'gunnar@example.org'),
    (100006, 'wilhelmina', 'paperboat', 0, 'mina@example.org'),
    (100007, 'desmond', 'bluebottle', 1, 'desmond@example.org');
INSERT IGNORE INTO amcharacter.charinfo (AID, CID, Name, BaseLv, JobLv, Zeny) VALUES
    (100003, 150000, 'Tobias the Slow', 23, 11, 1840),
    (100004, 150001, 'Ines', 41, 30, 12755);
INSERT IGNORE INTO amglobal.party (Name, MemData) VALUES ('Night Watch', '');

-- The logins that Kerno.ini gives the servers.
CREATE USER IF NOT EXISTS kerno_login@localhost IDENTIFIED BY 'login-secret';
CREATE USER IF NOT EXISTS kerno_character@localhost IDENTIFIED BY 'character-secret';
CREATE USER IF NOT EXISTS kerno_global@localhost IDENTIFIED BY 'global-secret';
GRANT ALL PRIVILEGES ON glogin.* TO kerno_login@localhost;
GRANT ALL PRIVILEGES ON amcharacter.* TO kerno_character@localhost;
GRANT ALL PRIVILEGES ON amglobal.* TO kerno_global@localhost;
