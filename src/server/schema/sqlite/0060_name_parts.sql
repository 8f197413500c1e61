-- 0060_name_parts.sql
-- Why: a part of a name among half a million is found by reading all of them. These indexes know in which names three
-- characters stand together, in either of their two names; a search holds the few that it is told against its pattern.
-- Triggers keep them in the transaction of the row; "orvane-server check" compares them with the rows.

create virtual table BaseSupplyListParts using fts5 (
  FoldEffectiveName, FoldEffectiveName2, content = 'BaseSupplyList', content_rowid = 'SerialNumber',
  tokenize = 'trigram case_sensitive 1', detail = none, columnsize = 0);
insert into BaseSupplyListParts (BaseSupplyListParts) values ('rebuild');

create trigger BaseSupplyListPartsAdded after insert on BaseSupplyList begin
  insert into BaseSupplyListParts (rowid, FoldEffectiveName, FoldEffectiveName2)
  select new.SerialNumber, new.FoldEffectiveName, new.FoldEffectiveName2
  where new.FoldEffectiveName is not null or new.FoldEffectiveName2 is not null;
end;
create trigger BaseSupplyListPartsRemoved after delete on BaseSupplyList begin
  insert into BaseSupplyListParts (BaseSupplyListParts, rowid, FoldEffectiveName, FoldEffectiveName2)
  select 'delete', old.SerialNumber, old.FoldEffectiveName, old.FoldEffectiveName2
  where old.FoldEffectiveName is not null or old.FoldEffectiveName2 is not null;
end;
create trigger BaseSupplyListPartsChanged
  after update of SerialNumber, FoldEffectiveName, FoldEffectiveName2 on BaseSupplyList
  when old.SerialNumber <> new.SerialNumber or old.FoldEffectiveName is not new.FoldEffectiveName
    or old.FoldEffectiveName2 is not new.FoldEffectiveName2
begin
  insert into BaseSupplyListParts (BaseSupplyListParts, rowid, FoldEffectiveName, FoldEffectiveName2)
  select 'delete', old.SerialNumber, old.FoldEffectiveName, old.FoldEffectiveName2
  where old.FoldEffectiveName is not null or old.FoldEffectiveName2 is not null;
  insert into BaseSupplyListParts (rowid, FoldEffectiveName, FoldEffectiveName2)
  select new.SerialNumber, new.FoldEffectiveName, new.FoldEffectiveName2
  where new.FoldEffectiveName is not null or new.FoldEffectiveName2 is not null;
end;

create virtual table PartnersParts using fts5 (
  FoldName, FoldName2, content = 'Partners', content_rowid = 'Partner',
  tokenize = 'trigram case_sensitive 1', detail = none, columnsize = 0);
insert into PartnersParts (PartnersParts) values ('rebuild');

create trigger PartnersPartsAdded after insert on Partners begin
  insert into PartnersParts (rowid, FoldName, FoldName2) values (new.Partner, new.FoldName, new.FoldName2);
end;
create trigger PartnersPartsRemoved after delete on Partners begin
  insert into PartnersParts (PartnersParts, rowid, FoldName, FoldName2)
  values ('delete', old.Partner, old.FoldName, old.FoldName2);
end;
create trigger PartnersPartsChanged after update of Partner, FoldName, FoldName2 on Partners
  when old.Partner <> new.Partner or old.FoldName is not new.FoldName or old.FoldName2 is not new.FoldName2
begin
  insert into PartnersParts (PartnersParts, rowid, FoldName, FoldName2)
  values ('delete', old.Partner, old.FoldName, old.FoldName2);
  insert into PartnersParts (rowid, FoldName, FoldName2) values (new.Partner, new.FoldName, new.FoldName2);
end;
