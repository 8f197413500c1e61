-- Why: a ticket of a removed user opened the session of a later user of the same login. Who a user is
-- tells his identity, which no other ever has; sessions opened before this step end with it.
alter table WSysUsers add column Identity text;
update WSysUsers set Identity = lower(hex(randomblob(16)));
create trigger UserGotIdentity after insert on WSysUsers
begin
  update WSysUsers set Identity = lower(hex(randomblob(16))) where ShortName = new.ShortName;
end;
alter table Session add column UserIdentity text;

create trigger UserWasForgotten after delete on WSysUsers
begin
  delete from ClientKey where Login = old.ShortName;
  delete from KnownMachine where Login = old.ShortName;
end;
